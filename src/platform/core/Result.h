// What an operation that can fail returns: a value, or an error text fit for a user.
// Any thread.
#pragma once

#include <QString>

#include <utility>
#include <variant>

// The failing half of a Result: `return Failure{text};`.
struct Failure
{
    QString text;
};

template <typename T = std::monostate>
class [[nodiscard]] Result
{
public:
    Result(T value)
        : m_state(std::move(value))
    {
    }
    Result(Failure failure)
        : m_state(std::move(failure))
    {
    }

    explicit operator bool() const { return std::holds_alternative<T>(m_state); }

    // Only for a Result that holds a value.
    [[nodiscard]] T &value() { return std::get<T>(m_state); }
    [[nodiscard]] const T &value() const { return std::get<T>(m_state); }

    // The reason of a failure; empty for a Result that holds a value.
    [[nodiscard]] QString error() const
    {
        const auto *failure = std::get_if<Failure>(&m_state);
        return failure ? failure->text : QString();
    }
    [[nodiscard]] Failure failure() const { return Failure{error()}; }

private:
    std::variant<T, Failure> m_state;
};

// The value of an operation that succeeds without one: `return Done{};`.
using Done = std::monostate;
