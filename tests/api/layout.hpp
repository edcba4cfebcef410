/// \file
/// Where the fields of an object lie.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

/// How far into object its field lies, in bytes. Unlike offsetof also where object holds references.
template <class Object, class Field>
std::ptrdiff_t offset(Object const& object, Field const& field)
{
    return reinterpret_cast<char const*>(&field) - reinterpret_cast<char const*>(&object);
}

/// What lies at that offset.
template <class Value, class Object>
Value value_at(Object const& object, std::size_t offset)
{
    Value value;
    std::memcpy(&value, reinterpret_cast<char const*>(&object) + offset, sizeof value);
    return value;
}

} // namespace hueline::test
