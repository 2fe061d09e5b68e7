#pragma once

// The column labels of `lxconfig compare`: a short name per file that tells it from every other.
// The last path components that every file shares (LXCONFIG.BIN on each card) are left out,
// then each file gets the shortest tail of its path that no other file has, so that
// cam4/LXCONFIG.BIN and cam7/LXCONFIG.BIN are "cam4" and "cam7", a.bin and b.bin "a.bin" and
// "b.bin", and site1/cam1/X.BIN and site2/cam1/X.BIN "site1/cam1" and "site2/cam1". A file
// named twice keeps its whole path as given.

#include <string>
#include <vector>

namespace lxconfig {

std::vector<std::string> fileLabels(const std::vector<std::string> &paths);

} // namespace lxconfig
