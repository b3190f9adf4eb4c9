#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace ostrelle {

// Small vectors that the compiler maps to the machine's own: the one place where painting is arithmetic per pixel has a
// budget of two nanoseconds for each. An extension that GCC and Clang share, on every architecture.

/// The four channels of one pixel, blue, green, red, alpha.
using Quad = float __attribute__((vector_size(16)));
using QuadInt = std::int32_t __attribute__((vector_size(16)));
using QuadShort = std::int16_t __attribute__((vector_size(8)));
/// The four channels of two neighbouring pixels.
using Pair = std::int16_t __attribute__((vector_size(16)));
using PairBytes = std::uint8_t __attribute__((vector_size(8)));

/// One step of an 8-bit channel is this many steps of a lane.
inline constexpr int kLaneShift = 6;
inline constexpr float kLaneFull = 255 << kLaneShift;

/// Four neighbouring values of a row.
inline Quad fourFrom(const float *values)
{
    Quad four;
    std::memcpy(&four, values, sizeof(four));
    return four;
}

/// A vector as an element of a container: the bare type would lose its alignment as a template argument.
struct LaneQuad
{
    Quad value;
};
struct LanePair
{
    Pair value;
};

inline Quad splat(float value)
{
    return Quad{value, value, value, value};
}

inline Quad least(Quad a, Quad b)
{
    return a < b ? a : b;
}

/// Rounds, also below zero: conversion alone cuts toward zero.
inline QuadShort toLanes(Quad value)
{
    constexpr std::int32_t kAboveAll = 1 << 15;
    const QuadInt raised = __builtin_convertvector(value + splat(kAboveAll + 0.5F), QuadInt);
    return __builtin_convertvector(raised - kAboveAll, QuadShort);
}

/// One pixel's channels twice.
inline Pair twice(Quad value)
{
    const QuadShort lanes = toLanes(value);
    return __builtin_shufflevector(lanes, lanes, 0, 1, 2, 3, 0, 1, 2, 3);
}

inline Quad pixelAt(std::span<const LanePair> row, int index)
{
    QuadShort lanes;
    std::memcpy(&lanes, reinterpret_cast<const std::byte *>(row.data()) + index * std::ptrdiff_t{sizeof(lanes)},
                sizeof(lanes));
    return __builtin_convertvector(lanes, Quad);
}

inline void setPixelAt(std::span<LanePair> row, int index, Quad value)
{
    const QuadShort lanes = toLanes(value);
    std::memcpy(reinterpret_cast<std::byte *>(row.data()) + index * std::ptrdiff_t{sizeof(lanes)}, &lanes,
                sizeof(lanes));
}

} // namespace ostrelle
