#pragma once

// What `lxconfig compare` learns in its first pass over the files: the editor's verdict on each
// file and, per setting, the values the accepted files hold with how many hold each. It keeps no
// record: its size grows with the number of different values, not with the number of files.

#include "configrecord.h"
#include "jsonoutput.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace lxconfig {

enum class FileVerdict : std::uint8_t
{
    Valid,
    Refused,    // the editor refuses it
    Unreadable, // it cannot be read
};

// The file read as check reads it: its verdict, the reason when not valid, the record when valid.
FileVerdict readComparedFile(const std::string &path, lumarex::ConfigRecord &record,
                             std::string &reason);

// One value of a setting and the files that hold it.
struct ValueGroup
{
    std::uint64_t key = 0;                 // the element's bytes
    std::uint32_t count = 0;               // files that hold it
    std::string text;                      // in the window's words, as set takes it
    OrderedJson value;                     // as the JSON of show and diff gives it
    std::vector<std::uint32_t> firstFiles; // the first few that hold it, by their index
    bool minority = false;                 // fewer files hold it than the most common value
};

// A setting (one element of an array) and how the files group by its value.
struct SettingTally
{
    const lumarex::FieldInfo *info = nullptr;
    int element = 0;
    std::vector<ValueGroup> groups; // after finish(): the most common first
    std::unordered_map<std::uint64_t, std::uint32_t> groupOf; // key -> index into groups

    std::string name() const;
    // "9 x 115200, 3 x 9600: cam4, cam7, cam9": the counts, then the files of the minority.
    std::string groupText(const std::vector<std::string> &labels) const;
    // The group of the element's value in the record, or nothing for a value the first pass
    // never saw.
    std::optional<std::uint32_t> groupIndex(const lumarex::ConfigRecord &record) const;
};

// How many files of the minority a group text names before "and N more".
inline constexpr std::size_t kNamedMinority = 10;

class CompareTally
{
public:
    CompareTally();

    void add(std::uint32_t file, const lumarex::ConfigRecord &record);
    // Sorts each setting's groups, most common first, and marks the minority: every value held
    // by fewer files than the most common one, when one value is the most common.
    void finish();

    // The settings in file order; with `all` false only those whose value differs.
    std::vector<const SettingTally *> settings(bool all) const;

private:
    std::vector<SettingTally> m_settings;
};

} // namespace lxconfig
