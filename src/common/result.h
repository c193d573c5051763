#pragma once

#include <QString>

#include <utility>
#include <variant>

/// What went wrong.
struct Error {
    QString text;      ///< usually from the driver or the system
    QString code = {}; ///< the database server's error number, or empty
};

/// The outcome of an operation: its value, or the error that prevented it.
template <typename T>
class [[nodiscard]] Result
{
public:
    using Value = T;

    // The constructors are implicit, so that a function can return a value or an error.
    Result(T value)
        : content(std::move(value))
    {
    }
    Result(Error error)
        : content(std::move(error))
    {
    }

    bool isOk() const { return std::holds_alternative<T>(content); }
    /// Call it only if isOk().
    const T &value() const { return std::get<T>(content); }
    /// Call these functions only if isOk() is false.
    const QString &error() const { return std::get<Error>(content).text; }
    const QString &errorCode() const { return std::get<Error>(content).code; }

private:
    std::variant<T, Error> content;
};
