#pragma once

#include <exception>

namespace workbook
{

/**
 * Runs an operation of the interface and returns its result. Returns `failure` if the operation
 * throws, because no exception may leave the engine.
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

/** Runs an operation that returns nothing. Returns false if the operation throws. */
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
