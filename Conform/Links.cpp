#include "Conform/Links.h"

#include "Conform/Copy.h"
#include "Conform/Elements.h"

namespace conform {

void correctLinks(Copy& copy) {
  std::size_t changed = 0;
  for (const Item& task : copy.tasks) {
    for (const pugi::xml_node link : task.element.children("PredecessorLink")) {
      ++copy.links;
      const pugi::xml_node lag = link.child("LinkLag");
      if (isBlank(textOf(lag)) && setText(link, lag, "LinkLag", "0")) ++changed;
    }
  }
  copy.report.count("links without a lag", changed);
}

}  // namespace conform
