#pragma once

// The settings as text: one "NAME = VALUE" line per setting, page by page in the window's tab
// order with a comment line per page, for people to read and review, and for git to diff. A
// value is in the window's words where they give the stored value back ("Lumarex GPS Receiver",
// on, 2.50); where they would not, it is the stored number followed by what the window shows,
// as show prints it ("-125 (shown as 10.00)", "17 (no item)"). The fields no control feeds
// (header, constants, spare bytes, checksum) follow, so that the text holds every byte of the
// file. Nothing in it depends on the run: no date, no file name.

#include "configrecord.h"
#include "failure.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lxconfig {

std::string recordToText(const lumarex::ConfigRecord &record);

// A window setting's value as its line gives it: the window's words where they give the stored
// value back, else the stored number and what the window shows ("-125 (shown as 10.00)").
std::string formValue(const lumarex::ConfigRecord &record, const lumarex::FieldInfo &info,
                      int element);

// A setting's line of a text form: comments (a first non-blank '#') and blank lines are not
// among them.
struct TextLine
{
    int number = 0;    // from 1
    std::string name;  // as written, blanks around it removed
    std::string value; // ditto
};

// The lines of a text, or the reason ("line 3: ...").
Result<std::vector<TextLine>> textLines(std::string_view text);

// What a line says of its field: the field, the element (-1: every element), and the record's
// bytes for it changed to the value the line gives, exactly (words or a stored number). The
// reason, without the line number, when the line cannot be read.
struct LineValue
{
    std::optional<lumarex::Field> field;
    int element = -1;
    std::string value;   // the value to hand to set: notes and quotes removed
    std::string problem; // why the line means nothing
};
LineValue readLine(const TextLine &line, lumarex::ConfigRecord &record);

// The record a whole text describes, every field given once (crc may be left out: it is then
// computed), or the reason.
Result<lumarex::ConfigRecord> recordFromText(std::string_view text);

inline constexpr const char *kTextLineForm =
    "expected NAME = VALUE: a setting's name, '=', its value (blank lines and lines beginning "
    "with '#' are ignored)";

} // namespace lxconfig
