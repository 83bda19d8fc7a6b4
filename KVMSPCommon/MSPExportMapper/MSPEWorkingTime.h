#pragma once

#include <string>

/// One working period within a day, in seconds from midnight.
class MSPEWorkingTime {
 public:
  MSPEWorkingTime(double fromTime, double toTime) : fromTime_(fromTime), toTime_(toTime) {}

  [[nodiscard]] double fromTime() const { return fromTime_; }
  [[nodiscard]] double toTime() const { return toTime_; }
  friend bool operator==(const MSPEWorkingTime&, const MSPEWorkingTime&) = default;

  [[nodiscard]] std::string description() const;

 private:
  double fromTime_;
  double toTime_;
};
