#pragma once

#include <string>

#include "Page/LinkLines.h"
#include "Page/Rows.h"
#include "Page/Timeline.h"

namespace page {

/// Appends the picture of a row: its bar, milestone or summary bar with its progress, the baselines under it, and its
/// part of the links, one path for each.
void drawRow(std::string& to, const Row& row, const LinkLines::Paths& links, const Timeline& timeline);

/// Appends the background of all rows: days off, lines of the timeline's units, today.
/// @param offDays for each of the timeline's days, whether it has no working time; empty to draw no days off.
void drawBackground(std::string& to, const Timeline& timeline, const std::vector<bool>& offDays,
                    conform::CivilSeconds today);

/// Appends the timeline's head: two rows of labels, for every unit that the reader may zoom to.
void drawHead(std::string& to, const Timeline& timeline);

}  // namespace page
