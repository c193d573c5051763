#pragma once

#include <QString>

#include <utility>
#include <variant>

/// What went wrong.
struct Error {
    QString text;      ///< without a line end; mostly the driver's or the system's
    QString code = {}; ///< the database server's number; empty where it has none
};

/// The outcome of an operation: its value, or the error that prevented it.
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
    /// Call it on a success only.
    const T &value() const { return std::get<T>(content); }
    /// Call them on an error only.
    const QString &error() const { return std::get<Error>(content).text; }
    const QString &errorCode() const { return std::get<Error>(content).code; }

private:
    std::variant<T, Error> content;
};
