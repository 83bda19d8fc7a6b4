#pragma once

namespace conform {

class Copy;

/// The exporter's priorities depend on the highest and the lowest of the plan, and reach 1000, which tells Microsoft
/// Project not to level the task. Here no priority, and 0, is 500, the standard; higher ones lie above it and lower
/// ones below, in equal steps by their rank among the plan's, so that their order stays. Needs the bundle.
void correctPriorities(Copy& copy);

}  // namespace conform
