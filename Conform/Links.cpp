#include "Conform/Links.h"

#include "Conform/Copy.h"

namespace conform {

void correctLinks(Copy& copy) {
  for (const Item& task : copy.tasks) {
    for (pugi::xml_node link : task.element.children("PredecessorLink")) {
      pugi::xml_node lag = link.child("LinkLag");
      if (!lag.text().empty()) continue;
      if (!lag) lag = link.append_child("LinkLag");
      lag.text().set("0");
      copy.report.count("links without a lag");
    }
  }
}

}  // namespace conform
