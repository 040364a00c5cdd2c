// Reads scripts.
#include "host/script/ScriptParser.h"

#include <gtest/gtest.h>

namespace {

using namespace host::script;

Step onlyStep(const QString& line) {
    const ParsedScript script = parseScript(line);
    EXPECT_FALSE(script.error) << script.error->reason.toStdString();
    EXPECT_EQ(script.steps.size(), 1U);
    return script.steps.empty() ? Step{} : script.steps.front();
}

QString reasonFor(const QString& line) {
    const ParsedScript script = parseScript(line);
    return script.error ? script.error->reason : QString();
}

TEST(ScriptParser, ReadsTheObjectAndTheTextToType) {
    const Step step = onlyStep(QStringLiteral("escribe EVia GRAN VÍA"));
    EXPECT_EQ(step.verb, Verb::Type);
    EXPECT_EQ(step.object, QStringLiteral("EVia"));
    EXPECT_EQ(step.argument, QStringLiteral("GRAN VÍA"));
}

TEST(ScriptParser, TextToTypeKeepsItsBlanks) {
    EXPECT_EQ(onlyStep(QStringLiteral("escribe EVia   A  B ")).argument, QStringLiteral("  A  B "));
}

TEST(ScriptParser, ABlankAloneCanBeTyped) {
    EXPECT_EQ(onlyStep(QStringLiteral("escribe EVia  ")).argument, QStringLiteral(" "));
}

TEST(ScriptParser, ReadsEveryVerb) {
    const std::pair<const char*, Verb> lines[] = {
        {"pega EVia a, b", Verb::Paste},     {"vacia EVia", Verb::Clear},
        {"tecla EVia Shift+Tab", Verb::Key}, {"pulsa BBNuevo", Verb::Click},
        {"pulsa2 DBG", Verb::DoubleClick},   {"elige CB LA RIOJA", Verb::Choose},
        {"responde si", Verb::Answer},       {"muestra EVia", Verb::Show},
        {"ventana", Verb::Window},           {"mensajes", Verb::Messages},
        {"captura a b.png", Verb::Capture},  {"titulo DBG 2", Verb::ClickTitle},
        {"medida 640x480", Verb::Resize}};
    for (const auto& [line, verb] : lines) {
        EXPECT_EQ(onlyStep(QString::fromUtf8(line)).verb, verb) << line;
    }
}

TEST(ScriptParser, ItemsAndFilesMayHaveBlanksInside) {
    EXPECT_EQ(onlyStep(QStringLiteral("elige CB LA RIOJA ")).argument, QStringLiteral("LA RIOJA"));
    EXPECT_EQ(onlyStep(QStringLiteral("captura a b.png")).argument, QStringLiteral("a b.png"));
}

TEST(ScriptParser, CommentsAndBlankLinesSayNothingButCount) {
    const ParsedScript script = parseScript(QStringLiteral("# uno\n\n   # dos\n  ventana\n"));
    ASSERT_EQ(script.steps.size(), 1U);
    EXPECT_EQ(script.steps.front().line, 4);
}

TEST(ScriptParser, ReadsFilesOfOtherSystems) {
    const ParsedScript script = parseScript(QStringLiteral("\uFEFFescribe EVia A\r\nventana\r\n"));
    ASSERT_FALSE(script.error);
    ASSERT_EQ(script.steps.size(), 2U);
    EXPECT_EQ(script.steps.front().argument, QStringLiteral("A"));
}

TEST(ScriptParser, AnUnknownVerbIsAnErrorOfItsLine) {
    const ParsedScript script = parseScript(QStringLiteral("ventana\nbaila EVia\nventana"));
    ASSERT_TRUE(script.error);
    EXPECT_EQ(script.error->line, 2);
    EXPECT_EQ(script.error->reason, QStringLiteral("no se conoce el paso «baila»"));
}

TEST(ScriptParser, SaysWhatIsMissing) {
    EXPECT_EQ(reasonFor(QStringLiteral("vacia")), QStringLiteral("falta el nombre del objeto"));
    EXPECT_EQ(reasonFor(QStringLiteral("escribe EVia")), QStringLiteral("falta el texto del paso"));
    EXPECT_EQ(reasonFor(QStringLiteral("captura")), QStringLiteral("falta el texto del paso"));
}

TEST(ScriptParser, SaysWhatIsTooMuch) {
    EXPECT_EQ(reasonFor(QStringLiteral("ventana EVia")), QStringLiteral("sobra «EVia»"));
    EXPECT_EQ(reasonFor(QStringLiteral("pulsa BBNuevo ya")), QStringLiteral("sobra «ya»"));
}

TEST(ScriptParser, RefusesUnknownKeysAndAnswers) {
    EXPECT_EQ(reasonFor(QStringLiteral("tecla EVia Tabulador")),
              QStringLiteral("no se conoce la tecla «Tabulador»"));
    EXPECT_EQ(reasonFor(QStringLiteral("responde quizá")),
              QStringLiteral("la respuesta es si, no, aceptar o cancelar"));
}

TEST(ScriptParser, ColumnsAndSizesAreNumbers) {
    EXPECT_FALSE(reasonFor(QStringLiteral("titulo DBG uno")).isEmpty());
    EXPECT_FALSE(reasonFor(QStringLiteral("titulo DBG -1")).isEmpty());
    EXPECT_FALSE(reasonFor(QStringLiteral("medida 640")).isEmpty());
    EXPECT_FALSE(reasonFor(QStringLiteral("medida 640x")).isEmpty());
    EXPECT_EQ(sizeOf(QStringLiteral("640x480")), QSize(640, 480));
}

} // namespace
