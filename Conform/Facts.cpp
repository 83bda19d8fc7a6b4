#include "Conform/Facts.h"

namespace conform {
namespace {

// Gathered from the schema of 2013 and later.
constexpr auto kOrders = std::to_array<PublishedOrder>({
    {"Project", "",
     "SaveVersion UID Name GUID Title Subject Category Company Manager Author CreationDate Revision LastSaved "
     "ScheduleFromStart StartDate FinishDate FYStartDate CriticalSlackLimit CurrencyDigits CurrencySymbol "
     "CurrencyCode CurrencySymbolPosition CalendarUID DefaultStartTime DefaultFinishTime MinutesPerDay "
     "MinutesPerWeek DaysPerMonth DefaultTaskType DefaultFixedCostAccrual DefaultStandardRate DefaultOvertimeRate "
     "DurationFormat WorkFormat EditableActualCosts HonorConstraints EarnedValueMethod InsertedProjectsLikeSummary "
     "MultipleCriticalPaths NewTasksEffortDriven NewTasksEstimated SplitsInProgressTasks SpreadActualCost "
     "SpreadPercentComplete TaskUpdatesResource FiscalYearStart WeekStartDay MoveCompletedEndsBack "
     "MoveRemainingStartsBack MoveRemainingStartsForward MoveCompletedEndsForward BaselineForEarnedValue "
     "AutoAddNewResourcesAndTasks StatusDate CurrentDate MicrosoftProjectServerURL Autolink NewTaskStartDate "
     "NewTasksAreManual DefaultTaskEVMethod ProjectExternallyEdited ExtendedCreationDate ActualsInSync "
     "RemoveFileProperties AdminProject BaselineCalendar UpdateManuallyScheduledTasksWhenEditingLinks "
     "KeepTaskOnNearestWorkingTimeWhenMadeAutoScheduled OutlineCodes WBSMasks ExtendedAttributes Calendars Tasks "
     "Resources Assignments"},
    {"ExtendedAttributes", "", "ExtendedAttribute"},
    {"ExtendedAttribute", "ExtendedAttributes",
     "FieldID FieldName CFType Guid ElemType MaxMultiValues UserDef Alias SecondaryPID AutoRollDown DefaultGuid "
     "Ltuid SecondaryGuid PhoneticAlias RollupType CalculationType Formula RestrictValues ValuelistSortOrder "
     "AppendNewValues Default ValueList"},
    {"ExtendedAttribute", "", "FieldID Value ValueGUID DurationFormat"},
    {"Calendars", "", "Calendar"},
    {"Calendar", "", "UID GUID Name IsBaseCalendar IsBaselineCalendar BaseCalendarUID WeekDays Exceptions WorkWeeks"},
    {"WeekDays", "", "WeekDay"},
    {"WeekDay", "", "DayType DayWorking TimePeriod WorkingTimes"},
    {"TimePeriod", "", "FromDate ToDate"},
    {"WorkingTimes", "", "WorkingTime"},
    {"WorkingTime", "", "FromTime ToTime"},
    {"Exceptions", "", "Exception"},
    {"Exception", "",
     "EnteredByOccurrences TimePeriod Occurrences Name Type Period DaysOfWeek MonthItem MonthPosition Month "
     "MonthDay DayWorking WorkingTimes"},
    {"WorkWeeks", "", "WorkWeek"},
    {"WorkWeek", "", "TimePeriod Name WeekDays"},
    {"Tasks", "", "Task"},
    {"Task", "",
     "UID GUID ID Name Active Manual Type IsNull CreateDate Contact WBS WBSLevel OutlineNumber OutlineLevel "
     "Priority Start Finish Duration DurationFormat Work Stop Resume ResumeValid EffortDriven Recurring "
     "OverAllocated Estimated Milestone Summary DisplayAsSummary Critical IsSubproject IsSubprojectReadOnly "
     "SubprojectName ExternalTask ExternalTaskProject EarlyStart EarlyFinish LateStart LateFinish StartVariance "
     "FinishVariance WorkVariance FreeSlack TotalSlack StartSlack FinishSlack FixedCost FixedCostAccrual "
     "PercentComplete PercentWorkComplete Cost OvertimeCost OvertimeWork ActualStart ActualFinish ActualDuration "
     "ActualCost ActualOvertimeCost ActualWork ActualOvertimeWork RegularWork RemainingDuration RemainingCost "
     "RemainingWork RemainingOvertimeCost RemainingOvertimeWork ACWP CV ConstraintType CalendarUID ConstraintDate "
     "Deadline LevelAssignments LevelingCanSplit LevelingDelay LevelingDelayFormat PreLeveledStart "
     "PreLeveledFinish Hyperlink HyperlinkAddress HyperlinkSubAddress IgnoreResourceCalendar Notes HideBar Rollup "
     "BCWS BCWP PhysicalPercentComplete EarnedValueMethod PredecessorLink ActualWorkProtected "
     "ActualOvertimeWorkProtected ExtendedAttribute Baseline OutlineCode IsPublished StatusManager CommitmentStart "
     "CommitmentFinish CommitmentType StartText FinishText DurationText ManualStart ManualFinish ManualDuration "
     "TimephasedData Project"},
    {"PredecessorLink", "", "PredecessorUID Type CrossProject CrossProjectName LinkLag LagFormat"},
    {"Baseline", "Task",
     "TimephasedData Number Interim Start Finish Duration DurationFormat EstimatedDuration Work Cost BCWS BCWP "
     "FixedCost"},
    {"Resources", "", "Resource"},
    {"Resource", "",
     "UID GUID ID Name Type IsNull Initials Phonetics NTAccount MaterialLabel Code Group WorkGroup EmailAddress "
     "Hyperlink HyperlinkAddress HyperlinkSubAddress MaxUnits PeakUnits OverAllocated AvailableFrom AvailableTo "
     "Start Finish CanLevel AccrueAt Work RegularWork OvertimeWork ActualWork RemainingWork ActualOvertimeWork "
     "RemainingOvertimeWork PercentWorkComplete StandardRate StandardRateFormat Cost OvertimeRate "
     "OvertimeRateFormat OvertimeCost CostPerUse ActualCost ActualOvertimeCost RemainingCost RemainingOvertimeCost "
     "WorkVariance CostVariance SV CV ACWP CalendarUID Notes BCWS BCWP IsGeneric IsInactive IsEnterprise "
     "BookingType ActualWorkProtected ActualOvertimeWorkProtected ActiveDirectoryGUID CreationDate "
     "ExtendedAttribute Baseline OutlineCode CostCenter IsCostResource AssnOwner AssnOwnerGuid IsBudget "
     "AvailabilityPeriods Rates TimephasedData"},
    {"Baseline", "Resource", "Number Work Cost BCWS BCWP"},
    {"Assignments", "", "Assignment"},
    {"Assignment", "",
     "UID GUID TaskUID ResourceUID PercentWorkComplete ActualCost ActualFinish ActualOvertimeCost "
     "ActualOvertimeWork ActualStart ActualWork ACWP Confirmed Cost CostRateTable CostVariance CV Delay Finish "
     "FinishVariance Hyperlink HyperlinkAddress HyperlinkSubAddress WorkVariance HasFixedRateUnits FixedMaterial "
     "LevelingDelay LevelingDelayFormat LinkedFields Milestone Notes Overallocated OvertimeCost OvertimeWork "
     "PeakUnits RateScale RegularWork RemainingCost RemainingOvertimeCost RemainingOvertimeWork RemainingWork "
     "ResponsePending Start Stop Resume StartVariance Summary SV Units UpdateNeeded VAC Work WorkContour BCWS BCWP "
     "BookingType ActualWorkProtected ActualOvertimeWorkProtected CreationDate AssnOwner AssnOwnerGuid BudgetCost "
     "BudgetWork ExtendedAttribute Baseline TimephasedData"},
    {"Baseline", "Assignment", "TimephasedData Number Start Finish Work Cost BCWS BCWP"},
    {"TimephasedData", "", "Type UID Start Finish Unit Value"},
});

constexpr auto kDateTimes = std::to_array<std::string_view>({"ActualFinish",
                                                             "ActualStart",
                                                             "AvailableFrom",
                                                             "AvailableTo",
                                                             "CommitmentFinish",
                                                             "CommitmentStart",
                                                             "ConstraintDate",
                                                             "CreateDate",
                                                             "CreationDate",
                                                             "CurrentDate",
                                                             "Deadline",
                                                             "EarlyFinish",
                                                             "EarlyStart",
                                                             "ExtendedCreationDate",
                                                             "Finish",
                                                             "FinishDate",
                                                             "FromDate",
                                                             "LastSaved",
                                                             "LateFinish",
                                                             "LateStart",
                                                             "ManualFinish",
                                                             "ManualStart",
                                                             "NewTaskStartDate",
                                                             "PreLeveledFinish",
                                                             "PreLeveledStart",
                                                             "RatesFrom",
                                                             "RatesTo",
                                                             "Resume",
                                                             "Start",
                                                             "StartDate",
                                                             "StatusDate",
                                                             "Stop",
                                                             "ToDate"});

// Written out, so that a number can be found by searching.
constexpr TextFieldNumbers kTaskFields = {
    188743731, 188743734, 188743737, 188743740, 188743743, 188743746, 188743747, 188743748, 188743749, 188743750,
    188743997, 188743998, 188743999, 188744000, 188744001, 188744002, 188744003, 188744004, 188744005, 188744006,
    188744007, 188744008, 188744009, 188744010, 188744011, 188744012, 188744013, 188744014, 188744015, 188744016};
constexpr TextFieldNumbers kResourceFields = {
    205520904, 205520905, 205520926, 205520927, 205520928, 205520993, 205520994, 205520995, 205520996, 205520997,
    205521121, 205521122, 205521123, 205521124, 205521125, 205521126, 205521127, 205521128, 205521129, 205521130,
    205521131, 205521132, 205521133, 205521134, 205521135, 205521136, 205521137, 205521138, 205521139, 205521140};

}  // namespace

std::span<const PublishedOrder> publishedOrders() { return kOrders; }
std::span<const std::string_view> dateTimeElements() { return kDateTimes; }
const TextFieldNumbers& taskTextFields() { return kTaskFields; }
const TextFieldNumbers& resourceTextFields() { return kResourceFields; }

}  // namespace conform
