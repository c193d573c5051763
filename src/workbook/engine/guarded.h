#pragma once

#include <exception>

namespace workbook
{

/**
 * Runs an operation of the interface. Returns `failure` if it throws, because no exception may
 * leave the engine.
 */
template <class Result, class Operation>
Result guarded(Result failure, Operation operation) noexcept
{
    try {
        return operation();
    } catch (const std::exception &) {
        return failure;
    }
}

/** Runs an operation without a result. Returns false if it throws. */
template <class Operation>
bool guarded(Operation operation) noexcept
{
    try {
        operation();
        return true;
    } catch (const std::exception &) {
        return false;
    }
}

} // namespace workbook
