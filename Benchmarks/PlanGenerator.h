#pragma once

#include <cstddef>
#include <string>

/// Writes a bundle of about this many tasks into the folder: a tree of groups with links, notes, user data and
/// assignments, nested resource groups whose members have schedules of 50 dated days, and a comparison scenario of the
/// same size. The same number always gives the same bytes.
void writeGeneratedBundle(const std::string &folder, std::size_t tasks);

/// Writes the smallest bundle that can be exported.
void writeSmallestBundle(const std::string &folder);
