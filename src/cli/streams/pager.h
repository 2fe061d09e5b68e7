#pragma once

// On a terminal, long output goes through a pager as git sends it there: the command in PAGER,
// else "less -FRX" (which quits at once when the text fits the screen). Never when standard
// output is not a terminal, nor with --no-pager; an empty PAGER or "cat" means none.

namespace lxconfig {

// Starts the pager, when standard output is a terminal and PAGER asks for one, and leads
// standard output into it (standard error too, when that is the terminal as well), as git does.
// Call before the command writes anything.
void startPager();

// Closes the pager's input and waits until the reader has quit it; nothing without a pager.
void waitForPager();

} // namespace lxconfig
