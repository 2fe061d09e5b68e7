#include "jsonoutput.h"

#include "fieldtext.h"
#include "fieldvalue.h"
#include "itemtexts.h"

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::Field;
using lumarex::FieldInfo;

std::string jsonText(const OrderedJson &document)
{
    return document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
}

OrderedJson checkEntry(const std::string &path, const char *verdict,
                       const std::optional<std::string> &reason,
                       const std::optional<std::string> &warning)
{
    OrderedJson entry;
    entry["path"] = path;
    entry["verdict"] = verdict;
    entry["reason"] = reason ? OrderedJson(*reason) : OrderedJson(nullptr);
    entry["warning"] = warning ? OrderedJson(*warning) : OrderedJson(nullptr);
    return entry;
}

OrderedJson findingEntry(const lumarex::roundtrip::Finding &finding)
{
    const FieldInfo &info = lumarex::fieldInfo(finding.field);
    OrderedJson entry;
    entry["field"] = info.name;
    entry["offset"] = info.offset;
    entry["stored"] = finding.stored;
    entry["shown"] = finding.shown;
    entry["saved"] = finding.saved;
    entry["why"] = std::string(lumarex::roundtrip::whyName(finding.why));
    entry["reason"] = finding.reason;
    return entry;
}

OrderedJson elementValue(const ConfigRecord &record, const FieldInfo &info, int element)
{
    if (info.type == lumarex::FieldType::Ascii4)
        return magicText(record);
    if (info.type == lumarex::FieldType::Bytes8)
        return record.value64(info.field);
    return numberOf(record, info, element);
}

std::optional<OrderedJson> shownText(const ConfigRecord &record, const FieldInfo &info, int element)
{
    const Shown shown = shownOf(record, info, element);
    switch (shown.kind) {
    case Shown::Kind::Number:
        break;
    case Shown::Kind::NoItem:
        return OrderedJson(nullptr);
    case Shown::Kind::Item:
    case Shown::Kind::Degrees:
        return OrderedJson(shown.text);
    }
    return std::nullopt;
}

OrderedJson elementEntry(const ConfigRecord &record, const FieldInfo &info, int element)
{
    OrderedJson entry;
    entry["field"] = info.name;
    entry["element"] = info.elementCount() == 1 ? OrderedJson(nullptr) : OrderedJson(element);
    entry["offset"] = info.offset + element * info.elementWidth();
    entry["value"] = elementValue(record, info, element);
    if (const std::optional<OrderedJson> text = shownText(record, info, element))
        entry["text"] = *text;
    return entry;
}

} // namespace lxconfig
