#pragma once

#include <string>

#include "Platform/Time/Instant.h"
#include "Platform/XML/XMLTree.h"

/// One deviation from the normal week: some days, and possibly a working period that holds on each of them.
class MSPEKvdxEventInfo {
 public:
  /// From the `start` and `end` of a source `event`. The event holds from the start's day to the end's day, on each of
  /// them from the start's time of day to the end's. When both times are midnight, it holds all day and the end's day
  /// is not part of it:
  ///
  ///   2026-05-04T08:00 to 2026-05-06T12:00   4, 5 and 6 May, 08:00-12:00 on each
  ///   2026-05-04T00:00 to 2026-05-06T00:00   4 and 5 May, all day
  /// @throws InvariantFailure when an attribute is missing or holds no date, when the end's time of day is before the
  /// start's, or when the two are equal at another time than midnight or on the same day.
  static MSPEKvdxEventInfo initWithKvdxEvent(xml::Node event);
  /// @param start, end seconds from midnight.
  MSPEKvdxEventInfo(platform::Instant fromDate, platform::Instant toDate, double start, double end)
      : hasTimeRange_(true), fromDate_(fromDate), toDate_(toDate), start_(start), end_(end) {}
  /// Without a working period.
  MSPEKvdxEventInfo(platform::Instant fromDate, platform::Instant toDate) : fromDate_(fromDate), toDate_(toDate) {}

  [[nodiscard]] bool hasTimeRange() const { return hasTimeRange_; }
  /// The first second of the first day.
  [[nodiscard]] platform::Instant fromDate() const { return fromDate_; }
  void setFromDate(platform::Instant date) { fromDate_ = date; }
  /// The last second of the last day.
  [[nodiscard]] platform::Instant toDate() const { return toDate_; }
  void setToDate(platform::Instant date) { toDate_ = date; }
  [[nodiscard]] double start() const { return start_; }
  [[nodiscard]] double end() const { return end_; }

  [[nodiscard]] std::string description() const;

 private:
  bool hasTimeRange_ = false;
  platform::Instant fromDate_;
  platform::Instant toDate_;
  double start_ = 0;
  double end_ = 0;
};
