#pragma once

// The JSON form of a record: one object with one key per field, named as in the file format.
// Arrays hold 20 numbers, the magic is a string of four characters of one byte each, every
// other field a whole number. Together the keys give every byte of the record, so a record
// survives the trip to JSON and back unchanged.

#include "configrecord.h"
#include "failure.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace lxconfig {

// The form; the reason, when fixed134 holds more than a JSON number can.
Result<std::string> recordToJson(const lumarex::ConfigRecord &record);

// Every key must be there once, known and within its field's range; the crc key is taken as it
// stands. The reason naming the key otherwise.
Result<lumarex::ConfigRecord> recordFromJson(std::string_view json);

// A JSON form with only some of the keys (a template): each key known and within its field's
// range, set into the record. The reason naming the key, leaving the record as it may have been
// changed in part, when one is not.
Done setFieldsFromJson(const nlohmann::json &form, lumarex::ConfigRecord &record);

} // namespace lxconfig
