#include "formschema.h"

#include "configrecord.h"
#include "fieldvalue.h"

namespace lxconfig {

using Json = nlohmann::ordered_json;

namespace {

Json wholeNumber(lumarex::FieldType type)
{
    const ValueRange range = valueRange(type);
    // A whole number may be written with a zero fraction (3.0): "integer" allows that too.
    return Json{{"type", "integer"}, {"minimum", range.min}, {"maximum", range.max}};
}

Json fieldSchema(const lumarex::FieldInfo &info)
{
    switch (info.type) {
    case lumarex::FieldType::Ascii4:
        // The length is counted by minLength and maxLength, which every validator counts in
        // characters. A pattern alone cannot say "exactly four": Python's $ also matches before
        // a final newline, so ^...{4}$ lets "CONF\n" through there. Here that newline would
        // be a fifth character; within four, it is one of the byte values allowed.
        return Json{{"description", kMagicDescription},
                    {"type", "string"},
                    {"minLength", 4},
                    {"maxLength", 4},
                    {"pattern", "^[\\u0000-\\u00ff]*$"}};
    case lumarex::FieldType::U16x20:
        return Json{{"type", "array"},
                    {"items", wholeNumber(info.type)},
                    {"minItems", info.elementCount()},
                    {"maxItems", info.elementCount()}};
    default:
        return wholeNumber(info.type);
    }
}

} // namespace

Json formSchema()
{
    Json properties = Json::object();
    Json required = Json::array();
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        Json field = fieldSchema(info);
        field["$comment"] =
            "offset " + std::to_string(info.offset) + ", " + std::to_string(info.width) + " bytes";
        properties[info.name] = field;
        required.push_back(info.name);
    }
    return Json{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                {"title", "LXCONFIG.BIN as lxconfig's JSON form"},
                {"description",
                 "What lxconfig export writes and lxconfig import reads: every field of the "
                 "167-byte record by its name. import computes the checksum afresh."},
                {"type", "object"},
                {"properties", properties},
                {"required", required},
                {"additionalProperties", false}};
}

} // namespace lxconfig
