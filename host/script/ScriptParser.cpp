// Parses scripts.
#include "host/script/ScriptParser.h"

#include <QStringList>
#include <array>

#include "host/script/KeyNames.h"

namespace host::script {
namespace {

enum class Form { Nothing, Object, ObjectAndText, Text };

struct Word {
    const char* name;
    Verb verb;
    Form form;
};

constexpr std::array words{
    Word{"escribe", Verb::Type, Form::ObjectAndText}, Word{"vacia", Verb::Clear, Form::Object},
    Word{"tecla", Verb::Key, Form::ObjectAndText},    Word{"pulsa", Verb::Click, Form::Object},
    Word{"pulsa2", Verb::DoubleClick, Form::Object},  Word{"titulo", Verb::ClickTitle, Form::ObjectAndText},
    Word{"elige", Verb::Choose, Form::ObjectAndText}, Word{"medida", Verb::Resize, Form::Text},
    Word{"responde", Verb::Answer, Form::Text},       Word{"muestra", Verb::Show, Form::Object},
    Word{"ventana", Verb::Window, Form::Nothing},     Word{"mensajes", Verb::Messages, Form::Nothing},
    Word{"captura", Verb::Capture, Form::Text},       Word{"pega", Verb::Paste, Form::ObjectAndText},
};

const Word* findWord(const QString& name) {
    for (const Word& word : words) {
        if (name == QLatin1String(word.name)) {
            return &word;
        }
    }
    return nullptr;
}

/// Cuts off the first word and the one blank after it.
QString takeWord(QString& rest) {
    qsizetype end = 0;
    while (end < rest.size() && !rest[end].isSpace()) {
        ++end;
    }
    const QString word = rest.left(end);
    rest = rest.mid(end + 1);
    return word;
}

QString withoutLeadingBlanks(const QString& text) {
    qsizetype begin = 0;
    while (begin < text.size() && text[begin].isSpace()) {
        ++begin;
    }
    return text.mid(begin);
}

bool isNumber(const QString& text) {
    bool isOne = false;
    return text.toInt(&isOne) >= 0 && isOne;
}

/// Why the words of a step do not fit together; empty when they do.
QString reasonAgainst(const Step& step, Form form) {
    const bool wantsObject = form == Form::Object || form == Form::ObjectAndText;
    const bool wantsText = form == Form::Text || form == Form::ObjectAndText;
    if (wantsObject && step.object.isEmpty()) {
        return QStringLiteral("falta el nombre del objeto");
    }
    if (wantsText && step.argument.isEmpty()) {
        return QStringLiteral("falta el texto del paso");
    }
    if (!wantsText && !step.argument.isEmpty()) {
        return QStringLiteral("sobra «%1»").arg(step.argument);
    }
    if (step.verb == Verb::Key && !keyStroke(step.argument)) {
        return QStringLiteral("no se conoce la tecla «%1»").arg(step.argument);
    }
    if (step.verb == Verb::ClickTitle && !isNumber(step.argument)) {
        return QStringLiteral("la columna es un número desde 0");
    }
    if (step.verb == Verb::Resize && !sizeOf(step.argument)) {
        return QStringLiteral("la medida se da como ANCHOxALTO");
    }
    const QStringList answers{QStringLiteral("si"), QStringLiteral("no"), QStringLiteral("aceptar"),
                              QStringLiteral("cancelar")};
    if (step.verb == Verb::Answer && !answers.contains(step.argument)) {
        return QStringLiteral("la respuesta es si, no, aceptar o cancelar");
    }
    return {};
}

/// Fills the step from its line; returns the reason when the line is not a step.
QString readStep(Step& step) {
    QString rest = withoutLeadingBlanks(step.source);
    const QString name = takeWord(rest);
    const Word* word = findWord(name);
    if (!word) {
        return QStringLiteral("no se conoce el paso «%1»").arg(name);
    }
    step.verb = word->verb;
    if (word->form == Form::Object || word->form == Form::ObjectAndText) {
        rest = withoutLeadingBlanks(rest);
        step.object = takeWord(rest);
    }
    // Only typed text keeps its outer blanks.
    step.argument = step.verb == Verb::Type || step.verb == Verb::Paste ? rest : rest.trimmed();
    return reasonAgainst(step, word->form);
}

} // namespace

std::optional<QSize> sizeOf(const QString& text) {
    const QStringList sides = text.split(QLatin1Char('x'));
    if (sides.size() != 2 || !isNumber(sides[0]) || !isNumber(sides[1])) {
        return std::nullopt;
    }
    return QSize(sides[0].toInt(), sides[1].toInt());
}

ParsedScript parseScript(const QString& text) {
    ParsedScript script;
    QString whole = text;
    if (whole.startsWith(QChar(0xFEFF))) {
        whole.remove(0, 1);
    }
    int number = 0;
    for (QString line : whole.split(QLatin1Char('\n'))) {
        ++number;
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#'))) {
            continue;
        }
        Step step;
        step.line = number;
        step.source = line;
        if (const QString reason = readStep(step); !reason.isEmpty()) {
            script.error = ScriptError{number, trimmed, reason};
            break;
        }
        script.steps.push_back(std::move(step));
    }
    return script;
}

} // namespace host::script
