#pragma once

#include "media_helper/ByteSource.h"

namespace ostrelle {

/// A part of another source, which outlives it.
class PartialSource final : public ByteSource
{
public:
    /// What lies beyond the end of `whole` is left out.
    PartialSource(ByteSource &whole, std::uint64_t begin, std::uint64_t end);
    std::uint64_t size() const override { return m_end - m_begin; }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) override;

private:
    ByteSource &m_whole;
    std::uint64_t m_begin;
    std::uint64_t m_end;
};

/// Another source, of which so much may be read and no more: then it reads as if it had ended. A jump counts as
/// kJumpCost bytes, so that a file of countless tiny parts ends as well.
class MeteredSource final : public ByteSource
{
public:
    static constexpr std::uint64_t kJumpCost = 1024;

    MeteredSource(ByteSource &whole, std::uint64_t budget)
        : m_whole(whole)
        , m_budget(budget)
    {
    }
    std::uint64_t size() const override { return m_whole.size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) override;
    /// Whether more was wanted: what was made of the rest may be wrong.
    bool isExhausted() const { return m_isExhausted; }

private:
    ByteSource &m_whole;
    std::uint64_t m_budget;
    bool m_isExhausted = false;
    std::uint64_t m_position = 0;
};

} // namespace ostrelle
