// Filters run over every record of a table: those on plain columns must allocate nothing. A program of its
// own, because it counts the allocations of the whole program.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "dbase/dbf/table_header.h"
#include "dbase/expression/expression.h"

namespace {
std::size_t allocations = 0;
} // namespace

// Not inlined: the compiler would take malloc and delete in one function for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using namespace dbase;

TEST(FilterAllocation, FiltersAllocateNothingPerRecord) {
    Schema schema;
    schema.columns = {{"ENT_MENOR", ColumnType::Logical, 1, 0, 0},
                      {"GRUPO", ColumnType::Numeric, 6, 0, 0},
                      {"NOMBRE", ColumnType::Character, 53, 0, 0},
                      {"ALTA", ColumnType::Date, 8, 0, 0}};
    completeLayout(schema, "T.DBF");
    const std::vector<char> record(schema.recordLength, ' ');
    const RecordView view{&schema, record, 1};
    for (const char* filter : {"ENT_MENOR=False", "GRUPO=1", "NOMBRE='MADRID' OR NOMBRE<>'LUGO'",
                               "ALTA>{01/01/2024}", "UPPER(NOMBRE)='MADRID' AND GRUPO+1=2"}) {
        const Expression expression = Expression::parse(filter, schema, Dialect::Filter);
        const std::size_t before = allocations;
        EXPECT_GT(before, 0U) << "what the parser takes is counted";
        (void)expression.test(view);
        EXPECT_EQ(allocations, before) << filter;
    }
}

} // namespace
