// An answer of the drive as it is made: bytes in the order of the wire.
#pragma once

#include "Medium.h"

#include <cstddef>
#include <span>
#include <vector>

namespace mmc {

class Bytes
{
public:
    Bytes &one(unsigned value)
    {
        m_bytes.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    Bytes &two(unsigned value) { return one(value >> 8).one(value); }
    Bytes &four(int value)
    {
        const auto bits = static_cast<unsigned>(value);
        return two(bits >> 16).two(bits);
    }
    Bytes &zeros(std::size_t count)
    {
        m_bytes.resize(m_bytes.size() + count);
        return *this;
    }
    Bytes &text(const char *text, std::size_t width)
    {
        for (std::size_t i = 0; i < width; ++i)
            one(static_cast<unsigned char>(*text ? *text++ : ' '));
        return *this;
    }
    enum class Order { ZeroFirst, TimeFirst };
    Bytes &msf(int block, Order order = Order::ZeroFirst)
    {
        const int frames = (block + preGap + 450000) % 450000; // negative ones count down from 100
        if (order == Order::ZeroFirst)
            one(0);
        one(static_cast<unsigned>(frames / 75 / 60))
            .one(static_cast<unsigned>(frames / 75 % 60))
            .one(static_cast<unsigned>(frames % 75));
        return order == Order::TimeFirst ? one(0) : *this;
    }
    Bytes &append(const Bytes &other)
    {
        m_bytes.insert(m_bytes.end(), other.m_bytes.begin(), other.m_bytes.end());
        return *this;
    }
    Bytes &set(std::size_t at, unsigned value)
    {
        m_bytes[at] = static_cast<std::uint8_t>(value);
        return *this;
    }
    // The length of what follows them, in the first two bytes.
    Bytes &setLength()
    {
        return set(0, static_cast<unsigned>(size() - 2) >> 8)
            .set(1, static_cast<unsigned>(size() - 2));
    }
    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    operator std::span<const std::uint8_t>() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
};

}
