// Parses expression texts: a lexer, and a recursive descent with bounded depth.
#include <array>
#include <charconv>
#include <utility>

#include "dbase/expression/expression_node.h"
#include "dbase/system/names.h"

namespace dbase {

namespace {

enum class TokenKind { End, Name, Number, Text, Date, True, False, And, Or, Not, Symbol };

struct Token {
    TokenKind kind = TokenKind::End;
    std::size_t position = 0;
    std::string_view text; // of a name, a text without its quotes, a date without its braces, a symbol
    double number = 0;
};

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
/// Column names from other programs may contain letters beyond ASCII.
bool isNameLetter(char c) { return isAsciiLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80; }

class Lexer {
public:
    Lexer(std::string_view text, Dialect dialect) : text_(text), dialect_(dialect) {}

    Token next() {
        while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) {
            ++at_;
        }
        Token token;
        token.position = at_;
        if (at_ == text_.size()) {
            return token;
        }
        const char c = text_[at_];
        if (isDigit(c) || (c == '.' && isDigit(peek(1)))) {
            return number(token);
        }
        if (c == '.') {
            return dottedWord(token);
        }
        if (isNameLetter(c)) {
            return name(token);
        }
        if (c == '"' || c == '\'') {
            return quoted(token, TokenKind::Text, c);
        }
        if (c == '[' && dialect_ == Dialect::Index) {
            return quoted(token, TokenKind::Text, ']');
        }
        if (c == '{') {
            return quoted(token, TokenKind::Date, '}');
        }
        return symbol(token);
    }

private:
    [[nodiscard]] char peek(std::size_t ahead) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }

    Token number(Token token) {
        const std::size_t start = at_;
        while (isDigit(peek(0))) {
            ++at_;
        }
        if (peek(0) == '.' && !isAsciiLetter(peek(1))) { // in 1.AND. the point belongs to the word
            ++at_;
            while (isDigit(peek(0))) {
                ++at_;
            }
        }
        const auto value = decodeNumber(text_.substr(start, at_ - start));
        if (!value || isNameLetter(peek(0))) {
            throw ExpressionFault{start, "el número no se entiende"};
        }
        token.kind = TokenKind::Number;
        token.number = *value;
        return token;
    }

    Token dottedWord(Token token) {
        const std::size_t end = text_.find('.', at_ + 1);
        const std::string_view word =
            end == std::string_view::npos ? std::string_view() : text_.substr(at_ + 1, end - at_ - 1);
        constexpr std::array<std::pair<std::string_view, TokenKind>, 7> words{{{"AND", TokenKind::And},
                                                                               {"OR", TokenKind::Or},
                                                                               {"NOT", TokenKind::Not},
                                                                               {"T", TokenKind::True},
                                                                               {"Y", TokenKind::True},
                                                                               {"F", TokenKind::False},
                                                                               {"N", TokenKind::False}}};
        for (const auto& [known, kind] : words) {
            if (sameName(word, known)) {
                token.kind = kind;
                at_ = end + 1;
                return token;
            }
        }
        throw ExpressionFault{at_, "se esperaba .AND., .OR., .NOT., .T. o .F."};
    }

    Token name(Token token) {
        const std::size_t start = at_;
        while (at_ < text_.size() && (isNameLetter(text_[at_]) || isDigit(text_[at_]))) {
            ++at_;
        }
        token.text = text_.substr(start, at_ - start);
        token.kind = dialect_ == Dialect::Filter ? filterWord(token.text) : TokenKind::Name;
        return token;
    }

    static TokenKind filterWord(std::string_view word) {
        constexpr std::array<std::pair<std::string_view, TokenKind>, 5> words{{{"AND", TokenKind::And},
                                                                               {"OR", TokenKind::Or},
                                                                               {"NOT", TokenKind::Not},
                                                                               {"TRUE", TokenKind::True},
                                                                               {"FALSE", TokenKind::False}}};
        for (const auto& [known, kind] : words) {
            if (sameName(word, known)) {
                return kind;
            }
        }
        return TokenKind::Name;
    }

    Token quoted(Token token, TokenKind kind, char closing) {
        const std::size_t end = text_.find(closing, at_ + 1);
        if (end == std::string_view::npos) {
            throw ExpressionFault{at_, std::string("falta el cierre ") + closing};
        }
        token.kind = kind;
        token.text = text_.substr(at_ + 1, end - at_ - 1);
        at_ = end + 1;
        return token;
    }

    Token symbol(Token token) {
        constexpr std::array<std::string_view, 12> symbols{"<>", "<=", ">=", "=", "<", ">",
                                                           "#",  "$",  "+",  "-", "(", ")"};
        token.kind = TokenKind::Symbol;
        const std::string_view rest = text_.substr(at_);
        for (const std::string_view symbol : symbols) {
            if (rest.starts_with(symbol)) {
                token.text = symbol;
                at_ += symbol.size();
                return token;
            }
        }
        if (rest.front() != ',') {
            throw ExpressionFault{at_, "hay un carácter que no se esperaba"};
        }
        token.text = rest.substr(0, 1);
        ++at_;
        return token;
    }

    std::string_view text_;
    Dialect dialect_;
    std::size_t at_ = 0;
};

/// Parses dd/mm/yy or dd/mm/yyyy; empty or blank is the blank date. Two-digit years mean 1950 to 2049.
std::optional<JulianDay> parseDate(const Token& token) {
    std::array<int, 3> numbers{};
    std::size_t field = 0, digits = 0;
    bool isBlank = true;
    for (const char c : token.text) {
        if (isDigit(c) && digits < 4) {
            numbers[field] = numbers[field] * 10 + (c - '0');
            ++digits;
            isBlank = false;
        } else if ((c == '/' || c == '-' || c == '.') && field < 2) {
            ++field;
            digits = 0;
        } else if (c != ' ') {
            throw ExpressionFault{token.position, "la fecha no se entiende"};
        }
    }
    if (isBlank) {
        return std::nullopt;
    }
    if (digits <= 2) {
        numbers[2] += numbers[2] < 50 ? 2000 : 1900;
    }
    const auto day = field == 2 && digits > 0 ? julianDay(numbers[2], numbers[1], numbers[0]) : std::nullopt;
    if (!day) {
        throw ExpressionFault{token.position, "la fecha no existe"};
    }
    return day;
}

class Parser {
public:
    Parser(std::string_view text, const ExpressionContext& context)
        : lexer_(text, context.dialect), context_(context), token_(lexer_.next()) {}

    NodePointer whole() {
        NodePointer node = disjunction();
        if (token_.kind != TokenKind::End) {
            throw ExpressionFault{token_.position, "sobra texto"};
        }
        return node;
    }

private:
    /// Counts nested calls, so that no text can exhaust the stack.
    class Level {
    public:
        explicit Level(Parser& parser) : parser_(parser) {
            if (++parser_.level_ > maxExpressionDepth) {
                throw ExpressionFault{parser_.token_.position, "tiene demasiados niveles"};
            }
        }
        ~Level() { --parser_.level_; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        Parser& parser_;
    };

    Token take() { return std::exchange(token_, lexer_.next()); }
    [[nodiscard]] bool isSymbol(std::string_view symbol) const {
        return token_.kind == TokenKind::Symbol && token_.text == symbol;
    }

    NodePointer disjunction() {
        NodePointer node = conjunction();
        while (token_.kind == TokenKind::Or) {
            const std::size_t position = take().position;
            node = makeJunction(Operation::Or, std::move(node), conjunction(), position);
        }
        return node;
    }

    NodePointer conjunction() {
        NodePointer node = negation();
        while (token_.kind == TokenKind::And) {
            const std::size_t position = take().position;
            node = makeJunction(Operation::And, std::move(node), negation(), position);
        }
        return node;
    }

    NodePointer negation() {
        if (token_.kind != TokenKind::Not) {
            return comparison();
        }
        const Level level(*this);
        const std::size_t position = take().position;
        return makeNot(negation(), position);
    }

    NodePointer comparison() {
        NodePointer left = sum();
        if (isSymbol("$")) {
            const std::size_t position = take().position;
            return makeContains(std::move(left), sum(), context_, position);
        }
        constexpr std::array<std::pair<std::string_view, Relation>, 7> relations{
            {{"=", Relation::Equal},
             {"<>", Relation::NotEqual},
             {"#", Relation::NotEqual},
             {"<", Relation::Less},
             {">", Relation::Greater},
             {"<=", Relation::LessOrEqual},
             {">=", Relation::GreaterOrEqual}}};
        for (const auto& [symbol, relation] : relations) {
            if (isSymbol(symbol)) {
                const std::size_t position = take().position;
                return makeComparison(relation, std::move(left), sum(), context_, position);
            }
        }
        return left;
    }

    NodePointer sum() {
        NodePointer node = signedTerm();
        while (isSymbol("+") || isSymbol("-")) {
            const Token sign = take();
            NodePointer right = signedTerm();
            node = sign.text == "+" ? makeSum(std::move(node), std::move(right), sign.position)
                                    : makeDifference(std::move(node), std::move(right), sign.position);
        }
        return node;
    }

    NodePointer signedTerm() {
        if (!isSymbol("-") && !isSymbol("+")) {
            return term();
        }
        const Level level(*this);
        const Token sign = take();
        NodePointer node = signedTerm();
        if (sign.text == "-") {
            return makeNegation(std::move(node), sign.position);
        }
        if (node->type != ValueType::Number) {
            throw ExpressionFault{sign.position, "un signo delante de lo que no es un número"};
        }
        return node;
    }

    NodePointer term() {
        if (isSymbol("(")) {
            const Level level(*this);
            const std::size_t position = take().position;
            NodePointer node = disjunction();
            close(position);
            return node;
        }
        if (token_.kind == TokenKind::Symbol || token_.kind == TokenKind::And ||
            token_.kind == TokenKind::Or || token_.kind == TokenKind::Not) {
            throw ExpressionFault{token_.position, "falta un valor"};
        }
        const Token token = take();
        switch (token.kind) {
        case TokenKind::Number:
            return makeNumber(token.number);
        case TokenKind::Text:
            return makeText(std::string(token.text));
        case TokenKind::Date:
            return makeDate(parseDate(token));
        case TokenKind::True:
        case TokenKind::False:
            return makeLogical(token.kind == TokenKind::True);
        case TokenKind::Name:
            return isSymbol("(") ? call(token) : column(token);
        default:
            throw ExpressionFault{token.position, "el texto termina antes de tiempo"};
        }
    }

    NodePointer call(const Token& name) {
        const Level level(*this);
        const std::size_t position = take().position;
        std::vector<NodePointer> arguments;
        if (!isSymbol(")")) {
            arguments.push_back(disjunction());
            while (isSymbol(",")) {
                take();
                arguments.push_back(disjunction());
            }
        }
        close(position);
        return makeCall(name.text, std::move(arguments), context_, name.position);
    }

    NodePointer column(const Token& name) {
        const auto found = context_.schema->find(name.text);
        if (!found) {
            throw ExpressionFault{name.position,
                                  "no hay ninguna columna " +
                                      CodePage::ofDriver(context_.schema->languageDriver).toUtf8(name.text)};
        }
        return makeColumn(*found, context_, name.position);
    }

    void close(std::size_t opened) {
        if (!isSymbol(")")) {
            throw ExpressionFault{token_.position, "falta el paréntesis que cierra el de la posición " +
                                                       std::to_string(opened + 1)};
        }
        take();
    }

    Lexer lexer_;
    const ExpressionContext& context_;
    Token token_;
    int level_ = 0;
};

} // namespace

NodePointer parseExpression(std::string_view text, const ExpressionContext& context) {
    return Parser(text, context).whole();
}

} // namespace dbase
