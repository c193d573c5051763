#pragma once

#include <QString>

#include <utility>
#include <variant>

/// What went wrong, without a line end; mostly the driver's or the system's text.
struct Error {
    QString text;
};

/// What an operation yields: a value, or the error that kept it from one.
template <typename T>
class [[nodiscard]] Result
{
public:
    using Value = T;

    // Implicit, so that a function returns either.
    Result(T value)
        : content(std::move(value))
    {
    }
    Result(Error error)
        : content(std::move(error))
    {
    }

    bool isOk() const { return std::holds_alternative<T>(content); }
    /// To be called on a success only.
    const T &value() const { return std::get<T>(content); }
    /// To be called on a failure only.
    const QString &error() const { return std::get<Error>(content).text; }

private:
    std::variant<T, Error> content;
};
