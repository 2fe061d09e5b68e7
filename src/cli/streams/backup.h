#pragma once

// What replacing a regular file keeps of the old one, as GNU tools name it: nothing, FILE~, or
// FILE.~N~ with N one more than the highest there ("existing": numbered where numbered backups
// of the file exist already, else FILE~).

namespace lxconfig {

enum class Backup
{
    None,
    Simple,
    Numbered,
    Existing
};

} // namespace lxconfig
