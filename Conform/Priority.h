#pragma once

namespace conform {

class Copy;

/// Recomputes priorities by rank. The exporter's depend on the plan's highest and lowest priority and may be 1000,
/// which tells Microsoft Project never to level the task. Here a missing priority and 0 become 500, the standard;
/// higher ones get values above it and lower ones below it, in equal steps by rank, so that their order is kept. Needs
/// the bundle.
void correctPriorities(Copy& copy);

}  // namespace conform
