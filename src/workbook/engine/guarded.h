#pragma once

namespace workbook
{

/** Runs one operation of the interface, which no exception leaves: it then returns `failure`. */
template <class Result, class Operation>
Result guarded(Result failure, Operation operation) noexcept
{
    try {
        return operation();
    } catch (...) {
        return failure;
    }
}

/** The same for an operation without a result: false if it ended with an exception. */
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
