#pragma once

namespace workbook
{

/** Runs one operation of the interface, which no exception leaves: then it answers `failure`. */
template <class Result, class Operation>
Result guarded(Result failure, Operation operation) noexcept
{
    try {
        return operation();
    } catch (...) {
        return failure;
    }
}

} // namespace workbook
