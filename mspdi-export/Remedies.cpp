#include "mspdi-export/Remedies.h"

#include <algorithm>
#include <array>

namespace {

/// A part of the reason of a failure, and the remedy for it.
struct Remedy {
  std::string_view part;
  std::string_view text;
};

constexpr std::array kRemedies = {
    Remedy{"was changed", "Try again when no other program saves the plan."},
    Remedy{"Too many open files", "Raise the limit of open files (ulimit -n)."},
    Remedy{"A folder has this name", "Remove the folder, or choose another name with -o."},
    Remedy{"is protected", "Remove the old file, or choose another name with -o."},
    Remedy{"could not be written", "Make room, or choose another place with -o."},
    Remedy{"does not exist", "Make the folder, or choose another place with -o."},
    Remedy{"neither an existing folder nor", "Choose a name that ends in .xml, or make the folder first."},
    Remedy{"inside of the bundle", "Choose a place outside of the bundle with -o."},
    Remedy{"there are warnings", "Correct what the warnings name, or leave out --strict."},
    Remedy{"data of the time zone", "Close other programs, or install the package tzdata again."},
    Remedy{"no time zone data", "Install the package tzdata."},
    Remedy{"no time zone", "Choose one of the names that timedatectl list-timezones prints."},
    Remedy{"may be equal only at midnight", "Choose the zone of the plan's author with --zone."},
    Remedy{"event start", "Choose the zone of the plan's author with --zone."},
    Remedy{"folder for temporary files", "Set TMPDIR to a folder that can be written and has room."},
    Remedy{"unpacks to more", "Unpack the archive yourself, if you trust it."},
    Remedy{"Cannot allocate memory", "Close other programs, or export it on a machine with more memory."},
    Remedy{"could not be unpacked", "Have the archive sent again, or unpack it yourself and export the folder."},
    Remedy{"Incorrect value of percentComplete",
           "Correct the task that is more than done: its done effort or its percentage."},
    Remedy{"has too many days", "Correct the task or event whose date is centuries off."},
    Remedy{"grew too large", "Correct it in Korvella, or export it in parts."},
    Remedy{"not enough memory", "Close other programs, or export it on a machine with more memory."},
    Remedy{"too long", "Correct the event whose date is centuries off."},
    Remedy{"contains itself", "Take the group out of itself."},
    Remedy{"Duplicated", "Give each task and resource an id of its own, and one group."},
};

}  // namespace

std::string_view remedyFor(std::string_view reason) {
  const auto* remedy = std::find_if(kRemedies.begin(), kRemedies.end(), [reason](const Remedy& candidate) {
    return reason.find(candidate.part) != std::string_view::npos;
  });
  if (remedy != kRemedies.end()) return remedy->text;
  return "Open the plan in Korvella, save it and try again; docs/troubleshooting.md lists the messages.";
}
