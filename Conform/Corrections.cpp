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

/// The order in which they run. A correction that looks at what another one changes stands behind it, and says so.
constexpr std::array kCorrections = {
    // First, because it tells references by the identifiers that the exporter gave.
    Correction{"References", &correctReferences},
    // Takes every reference for right.
    Correction{"Identifiers", &correctIdentifiers},
    Correction{"CustomFields", &correctCustomFields},
    Correction{"ProjectName", &correctProjectName},
    Correction{"Currency", &correctCurrency},
    Correction{"TaskCalendars", &correctTaskCalendars},
    Correction{"Priority", &correctPriorities},
    Correction{"Progress", &correctProgress},
    Correction{"Rates", &correctRates},
    Correction{"Links", &correctLinks},
    Correction{"ProjectWeek", &correctProjectWeek},
    Correction{"WorkOverTime", &correctWorkOverTime},
    // The two behind it find nothing then; they are for calendars of which only the file is at hand.
    Correction{"Days", &correctDays},
    Correction{"WorkWeeks", &correctWorkWeeks},
    Correction{"ExceptionDates", &correctExceptionDates},
    // Calls calendars by the numbers that they have in the end.
    Correction{"Names", &correctNames},
    Correction{"Outline", &correctOutline},
    Correction{"KeepDates", &keepDates},
    // Last, because the others append what they add.
    Correction{"Order", &correctOrder},
};

}  // namespace

void correct(Copy& copy) {
  for (const Correction& correction : kCorrections) correction.apply(copy);
}

}  // namespace conform
