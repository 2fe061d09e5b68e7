#pragma once

// The commands of lxconfig. Each takes its arguments after the command's name and the -o value
// (empty when not given), reports on the Output and returns the process's exit status.

#include "backup.h"
#include "output.h"

#include <string>
#include <vector>

namespace lxconfig {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1; // a file is not valid, a value or a write failed
inline constexpr int kExitError =
    2; // a wrong command line; for diff any failure, as 1 means "differ"

// How a command prints its result: the plain text, or JSON for scripts.
enum class Format
{
    Text,
    Json,
    Csv, // compare only
    Html // compare only
};

struct Invocation
{
    std::vector<std::string> arguments;
    std::string outputPath;
    bool force = false;  // set may write a magic or format version the editor refuses
    bool raw = false;    // set, apply: the bytes as given, no form rules
    bool strict = false; // check: also what the editor's load and save would change
    bool quiet = false;  // set, apply: no report of the changes; check: the exit status alone
    bool list = false;   // explain: the settings index
    bool all = false;    // compare: every setting, not only those that differ
    Format format = Format::Text;
    Backup backup = Backup::None;
    std::string fieldsPattern; // apply: only the template's fields that match, empty: all
    std::string pdfPath;       // report: print the sheet to this PDF through a browser
    std::string title;         // report: the camera's name on every sheet
    std::string paper;         // report: "a4" or "letter"; empty: the printer's

    bool checkOnly = false;    // write: what would change on the card, nothing written
    bool eject = false;        // write: unmount the card and power it off afterwards
    bool formatGiven = false;  // export, import: --format given (text: the settings as text)
    std::string fromPath;      // set: the settings as text, from this file ("-": standard input)
    std::string exceptPattern; // apply: the template's fields left as each file has them
};

int checkCommand(const Invocation &invocation, Output &output);
int showCommand(const Invocation &invocation, Output &output);
int exportCommand(const Invocation &invocation, Output &output);
int importCommand(const Invocation &invocation, Output &output);
int defaultsCommand(const Invocation &invocation, Output &output);
int setCommand(const Invocation &invocation, Output &output);
int diffCommand(const Invocation &invocation, Output &output);
int explainCommand(const Invocation &invocation, Output &output);
int resaveCommand(const Invocation &invocation, Output &output);
int applyCommand(const Invocation &invocation, Output &output);
int reportCommand(const Invocation &invocation, Output &output);
int helpCommand(const Invocation &invocation, Output &output);
int cardsCommand(const Invocation &invocation, Output &output);
int writeCommand(const Invocation &invocation, Output &output);
int compareCommand(const Invocation &invocation, Output &output);

} // namespace lxconfig
