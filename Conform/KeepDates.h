#pragma once

namespace conform {

class Copy;

/// When the user asks for it: each task that is no summary is scheduled by hand, on the dates and with the duration
/// that it has, so that no reader moves it.
void keepDates(Copy& copy);

}  // namespace conform
