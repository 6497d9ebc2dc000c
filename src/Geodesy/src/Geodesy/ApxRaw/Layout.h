// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/ApxRaw/RawRecord.h"

#include "../Trajectory/ByteOrder.h"
#include "Geodesy/SignallingNaN.h"

#include <array>
#include <bit>
#include <cstddef>

// The raw APX record: no file header, 115-byte records of big-endian fields. Offsets of the
// fields that RawRecord holds; the other bytes are a 7-byte record header (0), two bytes
// (7, 8), a 16-bit word (9), a float (53), a double (81) and two trailing bytes (113, 114).
// Shared by the reader and the writer.
namespace Kelvo::Geodesy::ApxRaw::Layout {

inline constexpr std::size_t RECORD_SIZE = 115;

/// A record is read in these pieces: header, the words up to the solution flag, the values,
/// and the two trailing bytes.
inline constexpr std::array<std::size_t, 5> PIECES = {7, 10, 96, 1, 1};

inline constexpr std::size_t TIME_OF_WEEK = 11;
inline constexpr std::size_t ALIGNMENT_STATUS = 15;
inline constexpr std::size_t SOLUTION_FLAG = 16;
inline constexpr std::size_t LATITUDE = 17;
inline constexpr std::size_t LONGITUDE = 25;
inline constexpr std::size_t HEIGHT = 33;
inline constexpr std::size_t VELOCITY = 41;
inline constexpr std::size_t UNUSED_FLOAT = 53;
inline constexpr std::size_t ROLL = 57;
inline constexpr std::size_t PITCH = 65;
inline constexpr std::size_t HEADING = 73;
inline constexpr std::size_t UNUSED_DOUBLE = 81;
inline constexpr std::size_t FIRST_TRIPLE = 89;
inline constexpr std::size_t SECOND_TRIPLE = 101;

static_assert(PIECES[0] + PIECES[1] + PIECES[2] + PIECES[3] + PIECES[4] == RECORD_SIZE);
static_assert(SECOND_TRIPLE + 3 * sizeof(float) + 2 == RECORD_SIZE);

using Bytes = std::array<char, RECORD_SIZE>;

namespace Detail {

template <typename Visitor>
void forEachDouble(Visitor&& visit)
{
    for (const auto offset : {LATITUDE, LONGITUDE, HEIGHT, ROLL, PITCH, HEADING, UNUSED_DOUBLE}) {
        visit(offset);
    }
}

template <typename Visitor>
void forEachFloat(Visitor&& visit)
{
    for (std::size_t i = 0; i < 3; ++i) {
        visit(VELOCITY + i * sizeof(float));
        visit(FIRST_TRIPLE + i * sizeof(float));
        visit(SECOND_TRIPLE + i * sizeof(float));
    }
    visit(UNUSED_FLOAT);
}

template <std::size_t Count>
std::array<float, Count> loadFloats(const char* bytes, std::endian order)
{
    std::array<float, Count> values;
    for (std::size_t i = 0; i < Count; ++i) {
        values[i] = Trajectory::ByteOrder::load<float>(bytes + i * sizeof(float), order);
    }
    return values;
}

} // namespace Detail

/// A record image before any byte of the file is read over it: doubles hold a signalling
/// NaN, floats a quiet NaN, everything else 0, each in the host's byte order.
inline Bytes prefilledImage()
{
    using namespace Trajectory::ByteOrder;
    Bytes image{};
    Detail::forEachDouble([&](std::size_t offset) { store(image.data() + offset, SIGNALLING_NAN(), std::endian::native); });
    Detail::forEachFloat([&](std::size_t offset) { store(image.data() + offset, quietNaNFloat(), std::endian::native); });
    return image;
}

/// The fields of RECORD_SIZE bytes whose multi-byte values are in `order`.
inline RawRecord decode(const char* bytes, std::endian order)
{
    using Trajectory::ByteOrder::load;
    RawRecord raw;
    raw.timeOfWeek = load<std::uint32_t>(bytes + TIME_OF_WEEK, order);
    raw.alignmentStatus = static_cast<std::uint8_t>(bytes[ALIGNMENT_STATUS]);
    raw.solutionFlag = static_cast<std::uint8_t>(bytes[SOLUTION_FLAG]);
    raw.latitude = load<double>(bytes + LATITUDE, order);
    raw.longitude = load<double>(bytes + LONGITUDE, order);
    raw.height = load<double>(bytes + HEIGHT, order);
    raw.velocity = Detail::loadFloats<3>(bytes + VELOCITY, order);
    raw.roll = load<double>(bytes + ROLL, order);
    raw.pitch = load<double>(bytes + PITCH, order);
    raw.heading = load<double>(bytes + HEADING, order);
    raw.firstTriple = Detail::loadFloats<3>(bytes + FIRST_TRIPLE, order);
    raw.secondTriple = Detail::loadFloats<3>(bytes + SECOND_TRIPLE, order);
    return raw;
}

/// The big-endian record of `raw`, with zeros in every byte that RawRecord does not hold.
inline Bytes encode(const RawRecord& raw)
{
    using Trajectory::ByteOrder::store;
    constexpr auto big = std::endian::big;
    Bytes bytes{};
    store(bytes.data() + TIME_OF_WEEK, raw.timeOfWeek, big);
    bytes[ALIGNMENT_STATUS] = static_cast<char>(raw.alignmentStatus);
    bytes[SOLUTION_FLAG] = static_cast<char>(raw.solutionFlag);
    store(bytes.data() + LATITUDE, raw.latitude, big);
    store(bytes.data() + LONGITUDE, raw.longitude, big);
    store(bytes.data() + HEIGHT, raw.height, big);
    store(bytes.data() + ROLL, raw.roll, big);
    store(bytes.data() + PITCH, raw.pitch, big);
    store(bytes.data() + HEADING, raw.heading, big);
    for (std::size_t i = 0; i < 3; ++i) {
        store(bytes.data() + VELOCITY + i * sizeof(float), raw.velocity[i], big);
        store(bytes.data() + FIRST_TRIPLE + i * sizeof(float), raw.firstTriple[i], big);
        store(bytes.data() + SECOND_TRIPLE + i * sizeof(float), raw.secondTriple[i], big);
    }
    return bytes;
}

} // namespace Kelvo::Geodesy::ApxRaw::Layout
