// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

// Loading and storing fixed-width values of binary record layouts in an explicit byte
// order, whatever the host's.
namespace Kelvo::Geodesy::Trajectory::ByteOrder {

/// The unsigned integer of `Size` bytes, which carries the bytes of any value of that size.
template <std::size_t Size>
using UnsignedOfSize = std::conditional_t<
    Size == 1, std::uint8_t,
    std::conditional_t<Size == 2, std::uint16_t, std::conditional_t<Size == 4, std::uint32_t, std::uint64_t>>>;

template <std::unsigned_integral U>
constexpr U swapBytes(U value)
{
    if constexpr (sizeof(U) == 1) {
        return value;
    } else if constexpr (sizeof(U) == 2) {
        return __builtin_bswap16(value);
    } else if constexpr (sizeof(U) == 4) {
        return __builtin_bswap32(value);
    } else {
        static_assert(sizeof(U) == 8);
        return __builtin_bswap64(value);
    }
}

/// The value of type T whose bytes, in `order`, start at `bytes`.
template <typename T>
T load(const void* bytes, std::endian order)
{
    using U = UnsignedOfSize<sizeof(T)>;
    U raw;
    std::memcpy(&raw, bytes, sizeof(raw));
    if (order != std::endian::native) {
        raw = swapBytes(raw);
    }
    return std::bit_cast<T>(raw);
}

/// Writes the bytes of `value`, in `order`, at `bytes`.
template <typename T>
void store(void* bytes, T value, std::endian order)
{
    using U = UnsignedOfSize<sizeof(T)>;
    auto raw = std::bit_cast<U>(value);
    if (order != std::endian::native) {
        raw = swapBytes(raw);
    }
    std::memcpy(bytes, &raw, sizeof(raw));
}

/// A quiet NaN (0x7FC00001): the value of a float that no file provided.
inline float quietNaNFloat()
{
    return std::bit_cast<float>(std::uint32_t{0x7FC00001});
}

/// `count` little-endian doubles from `bytes`, stored through the member pointers `fields`.
template <typename Record, std::size_t Count>
void loadLittleEndianDoubles(const char* bytes, Record& record, const std::array<double Record::*, Count>& fields)
{
    for (std::size_t i = 0; i < Count; ++i) {
        record.*fields[i] = load<double>(bytes + i * sizeof(double), std::endian::little);
    }
}

/// The inverse of loadLittleEndianDoubles.
template <typename Record, std::size_t Count>
void storeLittleEndianDoubles(char* bytes, const Record& record, const std::array<double Record::*, Count>& fields)
{
    for (std::size_t i = 0; i < Count; ++i) {
        store(bytes + i * sizeof(double), record.*fields[i], std::endian::little);
    }
}

} // namespace Kelvo::Geodesy::Trajectory::ByteOrder
