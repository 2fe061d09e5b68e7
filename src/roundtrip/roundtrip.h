#pragma once

// What the editor makes of a file: "Read from file" into a freshly started window, then at once
// "Write to file". predictResave gives the 167 bytes it would save (or why it refuses the file);
// strictFindings names every stored value that would not come back as it is, and why.
//
// The editor assembles its record in cleared memory, so the bytes no control feeds (spare157,
// and a mode byte whose box has no code) are saved as 0; the prediction says so and the
// differential test compares all 167 bytes, these included.

#include "configrecord.h"
#include "editorverdict.h"

#include <string>
#include <vector>

namespace lumarex::roundtrip {

struct ResavePrediction
{
    Verdict verdict = Verdict::Accepted; // the editor's verdict on the file
    std::string refusal;                 // why the editor refuses it, empty when accepted
    RecordBytes bytes{};                 // what it saves, when it accepts the file

    bool accepted() const { return verdict == Verdict::Accepted; }
};

ResavePrediction predictResave(const RecordBytes &record);

struct Finding
{
    enum class Why
    {
        NoItem,       // no item of the box holds the stored index, text or mode code
        Clamped,      // the box holds only values of its range
        Converted,    // the box's conversion changes it (a check box, hundredths)
        AnotherBox,   // the value is restored into another box, or another field's into its box
        PresetByRule, // a form rule set the box and the load does not set it back
        NotRestored,  // the load leaves the box as a fresh window shows it
        NoControl,    // no control shows the value at all
    };

    Field field;
    Why why;
    std::string stored; // the value in the file
    std::string shown;  // what the window shows after the load
    std::string saved;  // what "Write to file" stores back
    std::string reason; // the why in words

    // One plain line: field, offset, stored, shown, saved back, why.
    std::string text() const;
};

std::string_view whyName(Finding::Why why); // "no item", "clamped", ...

// Nothing for a file the editor refuses: it is never loaded (its verdict says why).
std::vector<Finding> strictFindings(const RecordBytes &record);

} // namespace lumarex::roundtrip
