#pragma once

#include "bridge/WireTypes.h"

#include <simdjson.h>

#include <optional>
#include <string_view>

/// What the decoders of both bridge interfaces share: one value read into an optional field, null clearing
/// it, any other shape failing the whole answer. Included by the decoders' source files only.
namespace JsonReading {

/// Thrown inside a decoder only: one value of the wrong shape fails the whole answer.
struct WrongShape
{};

inline bool isNull(const simdjson::dom::element& value)
{
    return value.type() == simdjson::dom::element_type::NULL_VALUE;
}

inline void read(const simdjson::dom::element& value, std::optional<WireText>& field)
{
    if (isNull(value))
        return field.reset();
    std::string_view text;
    if (value.get_string().get(text) != simdjson::SUCCESS)
        throw WrongShape{};
    field = text;
}

inline void read(const simdjson::dom::element& value, std::optional<bool>& field)
{
    if (isNull(value))
        return field.reset();
    bool flag = false;
    if (value.get_bool().get(flag) != simdjson::SUCCESS)
        throw WrongShape{};
    field = flag;
}

} // namespace JsonReading
