#include "Conform/Corrections.h"

#include <array>

#include "Conform/Copy.h"
#include "Conform/Links.h"
#include "Conform/Order.h"

namespace conform {
namespace {

/// The order in which they run. A correction that looks at what another one changes stands behind it, and says so.
constexpr std::array kCorrections = {
    Correction{"Links", &correctLinks},
    // Last, because the others append what they add.
    Correction{"Order", &correctOrder},
};

}  // namespace

void correct(Copy& copy) {
  for (const Correction& correction : kCorrections) correction.apply(copy);
}

}  // namespace conform
