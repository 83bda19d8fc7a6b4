#include "Conform/Corrections.h"

#include <array>

#include "Conform/Copy.h"
#include "Conform/Currency.h"
#include "Conform/CustomFields.h"
#include "Conform/Days.h"
#include "Conform/ExceptionDates.h"
#include "Conform/Identifiers.h"
#include "Conform/KeepDates.h"
#include "Conform/Links.h"
#include "Conform/Names.h"
#include "Conform/NegativeDurations.h"
#include "Conform/Order.h"
#include "Conform/Outline.h"
#include "Conform/Priority.h"
#include "Conform/Progress.h"
#include "Conform/ProjectName.h"
#include "Conform/ProjectWeek.h"
#include "Conform/Rates.h"
#include "Conform/References.h"
#include "Conform/TaskCalendars.h"
#include "Conform/WorkOverTime.h"
#include "Conform/WorkWeeks.h"

namespace conform {
namespace {

/// The corrections in the order in which they run. One that reads what another one changes must come later; the
/// comments say why.
constexpr std::array kCorrections = {
    // First, because it recognizes references by the identifiers that the exporter wrote.
    Correction{"References", &correctReferences},
    // After References, because it relies on every reference being right.
    Correction{"Identifiers", &correctIdentifiers},
    Correction{"CustomFields", &correctCustomFields},
    Correction{"ProjectName", &correctProjectName},
    Correction{"Currency", &correctCurrency},
    Correction{"TaskCalendars", &correctTaskCalendars},
    Correction{"Priority", &correctPriorities},
    // Before Progress, because it divides the durations.
    Correction{"NegativeDurations", &correctNegativeDurations},
    Correction{"Progress", &correctProgress},
    Correction{"Rates", &correctRates},
    Correction{"Links", &correctLinks},
    Correction{"ProjectWeek", &correctProjectWeek},
    Correction{"WorkOverTime", &correctWorkOverTime},
    // The two corrections after this one are for files without a bundle. With a bundle, they find nothing to do.
    Correction{"Days", &correctDays},
    Correction{"WorkWeeks", &correctWorkWeeks},
    Correction{"ExceptionDates", &correctExceptionDates},
    // After Identifiers, because it uses the final numbers of calendars in names.
    Correction{"Names", &correctNames},
    Correction{"Outline", &correctOutline},
    Correction{"KeepDates", &keepDates},
    // Last, because the others append new elements at the end.
    Correction{"Order", &correctOrder},
};

}  // namespace

void correct(Copy& copy) {
  for (const Correction& correction : kCorrections) correction.apply(copy);
}

}  // namespace conform
