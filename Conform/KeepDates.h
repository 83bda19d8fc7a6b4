#pragma once

namespace conform {

class Copy;

/// If the user asks for it, marks each task that is not a summary as scheduled by hand, with its present dates and
/// duration, so that no reader moves it.
void keepDates(Copy& copy);

}  // namespace conform
