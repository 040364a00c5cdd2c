// The table and record that the tests of expressions and filters share.
#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/table_header.h"
#include "dbase/expression/expression.h"
#include "dbase/system/error.h"

namespace dbase {

/// A table with one column of each type and one record, set from texts.
class ExpressionTest : public ::testing::Test {
protected:
    explicit ExpressionTest(LanguageDriver driver = LanguageDriver::AnsiUs, Dialect dialect = Dialect::Index)
        : dialect_(dialect) {
        const auto add = [this](const char* name, ColumnType type, std::uint16_t width,
                                std::uint8_t decimals = 0) {
            schema_.columns.push_back({name, type, width, decimals, 0});
        };
        add("COD", ColumnType::Character, 5);
        add("NOMBRE", ColumnType::Character, 12);
        add("NUM", ColumnType::Numeric, 6);
        add("SALDO", ColumnType::Numeric, 9, 2);
        add("ALTA", ColumnType::Date, 8);
        add("MENOR", ColumnType::Logical, 1);
        schema_.languageDriver = static_cast<std::uint8_t>(driver);
        completeLayout(schema_, "T.DBF");
        record_.assign(schema_.recordLength, ' ');
    }

    void set(const char* column, std::string_view text) {
        const Column& target = schema_.columns[schema_.find(column).value()];
        encodeText(std::span(record_).subspan(target.offset, target.width), text);
    }

    [[nodiscard]] RecordView view() const { return {&schema_, record_, 42}; }
    [[nodiscard]] Expression parse(std::string_view text) const {
        return Expression::parse(text, schema_, dialect_);
    }
    [[nodiscard]] std::string text(std::string_view expression) const {
        return parse(expression).evaluate(view()).text;
    }
    [[nodiscard]] double number(std::string_view expression) const {
        return parse(expression).evaluate(view()).number;
    }
    [[nodiscard]] bool test(std::string_view expression) const { return parse(expression).test(view()); }

    /// The text of the BadExpression error; "" when there is none.
    [[nodiscard]] std::string refusal(std::string_view expression) const {
        try {
            (void)parse(expression);
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), ErrorCode::BadExpression);
            return error.what();
        }
        return {};
    }

    [[nodiscard]] std::size_t covered(std::string_view expression,
                                      std::initializer_list<const char*> columns) const {
        std::vector<bool> given(schema_.columns.size());
        for (const char* column : columns) {
            given[schema_.find(column).value()] = true;
        }
        return parse(expression).coveredWidth(given);
    }

    Schema schema_;
    std::vector<char> record_;

private:
    Dialect dialect_;
};

inline bool mentions(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

} // namespace dbase
