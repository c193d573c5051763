#pragma once

#include <cstdint>

namespace workbook
{

class ByteSink;

/**
 * The container of an .xls file: a small file system of 512-byte sectors. It contains a single
 * stream, "Workbook". The constructor reserves space for the header. Write the stream to the sink,
 * then call finish(), which appends the directory and the tables and fills in the header. A stream
 * of 2 GiB or more is an error, latched in the sink.
 */
class CompoundFile
{
public:
    explicit CompoundFile(ByteSink &byteSink);

    void finish();

private:
    struct Layout;

    void writeDirectory(const Layout &layout);
    void writeAllocation(const Layout &layout);
    void writeOverflow(const Layout &layout);
    void fillHeader(const Layout &layout);
    void padTo(std::uint64_t size);

    ByteSink &sink;
};

} // namespace workbook
