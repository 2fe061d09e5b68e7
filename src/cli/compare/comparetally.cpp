#include "comparetally.h"

#include "commandfiles.h"
#include "fieldtext.h"
#include "fieldvalue.h"
#include "formfields.h"
#include "recorddifference.h"
#include "recordfile.h"
#include "settingvalue.h"
#include "textform.h"

#include <algorithm>
#include <cstring>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::FieldInfo;

namespace {

std::uint64_t elementKey(const ConfigRecord &record, const FieldInfo &info, int element)
{
    std::uint64_t key = 0;
    const std::size_t offset =
        static_cast<std::size_t>(info.offset + element * info.elementWidth());
    std::memcpy(&key, record.bytes().data() + offset,
                static_cast<std::size_t>(info.elementWidth()));
    return key;
}

// A setting of the window in its words, as set takes it, or its stored number and what the
// window shows where no words give it back (as the text form writes it); any other field as
// show prints it.
std::string valueText(const ConfigRecord &record, const FieldInfo &info, int element)
{
    if (info.elementCount() == 1 && lumarex::formFieldOf(info.field))
        return formValue(record, info, element);
    return elementText(record, info, element);
}

} // namespace

FileVerdict readComparedFile(const std::string &path, ConfigRecord &record, std::string &reason)
{
    const Result<RecordFile> file = readRecordFile(path);
    if (!file) {
        reason = file.failure().reason;
        return FileVerdict::Unreadable;
    }
    record = file->record;
    if (file->refusal) {
        reason = *file->refusal;
        return FileVerdict::Refused;
    }
    return FileVerdict::Valid;
}

std::string SettingTally::name() const
{
    return elementName(*info, element);
}

std::string SettingTally::groupText(const std::vector<std::string> &labels) const
{
    std::string text;
    std::vector<std::uint32_t> minorityFiles;
    std::uint64_t minorityCount = 0;
    for (const ValueGroup &group : groups) {
        text += (text.empty() ? "" : ", ") + std::to_string(group.count) + " x " + group.text;
        if (!group.minority)
            continue;
        minorityCount += group.count;
        minorityFiles.insert(minorityFiles.end(), group.firstFiles.begin(), group.firstFiles.end());
    }
    // Each group keeps its first files, so the first of all the minority's are among these.
    std::sort(minorityFiles.begin(), minorityFiles.end());
    if (minorityFiles.size() > kNamedMinority)
        minorityFiles.resize(kNamedMinority);
    for (std::size_t i = 0; i < minorityFiles.size(); ++i)
        text += (i == 0 ? ": " : ", ") + labels.at(minorityFiles[i]);
    if (minorityCount > minorityFiles.size())
        text += " and " + std::to_string(minorityCount - minorityFiles.size()) + " more";
    return text;
}

std::optional<std::uint32_t> SettingTally::groupIndex(const ConfigRecord &record) const
{
    const auto found = groupOf.find(elementKey(record, *info, element));
    if (found == groupOf.end())
        return std::nullopt;
    return found->second;
}

CompareTally::CompareTally()
{
    for (const FieldInfo &info : lumarex::fieldTable()) {
        // The checksum differs wherever anything else does, and the editor mends it on save.
        if (info.field == lumarex::Field::crc)
            continue;
        for (int element = 0; element < info.elementCount(); ++element) {
            SettingTally setting;
            setting.info = &info;
            setting.element = element;
            m_settings.push_back(std::move(setting));
        }
    }
}

void CompareTally::add(std::uint32_t file, const ConfigRecord &record)
{
    for (SettingTally &setting : m_settings) {
        const std::uint64_t key = elementKey(record, *setting.info, setting.element);
        const auto [found, isNew] =
            setting.groupOf.try_emplace(key, static_cast<std::uint32_t>(setting.groups.size()));
        if (isNew) {
            ValueGroup group;
            group.key = key;
            group.text = valueText(record, *setting.info, setting.element);
            group.value = elementValue(record, *setting.info, setting.element);
            setting.groups.push_back(std::move(group));
        }
        ValueGroup &group = setting.groups[found->second];
        ++group.count;
        if (group.firstFiles.size() < kNamedMinority)
            group.firstFiles.push_back(file);
    }
}

void CompareTally::finish()
{
    for (SettingTally &setting : m_settings) {
        std::stable_sort(
            setting.groups.begin(), setting.groups.end(),
            [](const ValueGroup &a, const ValueGroup &b) { return a.count > b.count; });
        const bool oneMostCommon =
            setting.groups.size() > 1 && setting.groups[0].count > setting.groups[1].count;
        for (std::size_t i = 0; i < setting.groups.size(); ++i) {
            setting.groups[i].minority = oneMostCommon && i > 0;
            setting.groupOf[setting.groups[i].key] = static_cast<std::uint32_t>(i);
        }
    }
}

std::vector<const SettingTally *> CompareTally::settings(bool all) const
{
    std::vector<const SettingTally *> chosen;
    for (const SettingTally &setting : m_settings) {
        if (all || setting.groups.size() > 1)
            chosen.push_back(&setting);
    }
    return chosen;
}

} // namespace lxconfig
