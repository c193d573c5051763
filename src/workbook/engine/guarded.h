#pragma once

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
    } catch (...) {
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
    } catch (...) {
        return false;
    }
}

} // namespace workbook
