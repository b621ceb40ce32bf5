// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/structure/classscanner.h"

#include <QRegularExpression>

namespace {

/// The text without comments, preprocessor lines, and what stands in quotes.
QString codeOf(const QString &text)
{
    static const QRegularExpression rest(
        QStringLiteral(R"re(//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+')re"
                       R"re(|^[ \t]*#(?:\\\n|[^\n])*)re"),
        QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
    QString code = text;
    return code.replace(rest, QStringLiteral(" "));
}

/// The place after the bracket that closes the one at \a open, or the end.
int afterBracket(const QString &code, int open)
{
    const QChar opening = code.at(open);
    const QChar closing = opening == QLatin1Char('{') ? QLatin1Char('}') : QLatin1Char(')');
    int depth = 0;
    for (int i = open; i < code.size(); ++i) {
        if (code.at(i) == opening)
            ++depth;
        else if (code.at(i) == closing && --depth == 0)
            return i + 1;
    }
    return code.size();
}

/// Removes the arguments of templates, innermost first.
QString withoutTemplateArguments(QString declaration)
{
    static const QRegularExpression arguments(QStringLiteral(R"((?<!operator)(?<![<>=-])<[^<>]*>)"));
    while (declaration.contains(arguments))
        declaration.remove(arguments);
    return declaration;
}

/// Counts one declaration of a class body, without its braces and its semicolon.
void count(const QString &text, ClassSize *size)
{
    static const QRegularExpression labels(QStringLiteral(
        R"(\b(?:public|protected|private)(?:\s+(?:slots|Q_SLOTS))?\s*:(?!:)|\b(?:signals|Q_SIGNALS)\s*:(?!:)|\bQ_[A-Z_]+\b(?:\s*\([^()]*\))?|\[\[[^\]]*\]\]|\balignas\s*\([^()]*\))"));
    static const QRegularExpression noMember(
        QStringLiteral(R"(^(?:using|typedef|friend|static_assert|enum|class|struct|union)\b)"));
    static const QRegularExpression function(QStringLiteral(R"((~?\w+|operator\s*[^\s\w(]+|operator\s*\(\s*\))\s*\()"));
    static const QRegularExpression uncounted(QStringLiteral(R"(\)[^()]*\b(?:override|final)\b|\)[^()]*=\s*delete\b)"));
    static const QRegularExpression fixedSlot(QStringLiteral(R"(^on_\w+_\w+$)"));

    QString declaration = text;
    declaration = withoutTemplateArguments(declaration.remove(labels)).simplified();
    declaration.remove(QRegularExpression(QStringLiteral(R"(^template\b\s*)")));
    if (declaration.isEmpty() || declaration.contains(noMember))
        return;
    const QRegularExpressionMatch match = function.match(declaration);
    const int value = declaration.indexOf(QRegularExpression(QStringLiteral(R"((?<!operator)(?<![=!<>])=(?!=))")));
    if (match.hasMatch() && (value < 0 || match.capturedStart() < value)) {
        const QString name = match.captured(1);
        const bool isSpecial = name == size->name || name.startsWith(QLatin1Char('~'));
        if (!isSpecial && !declaration.contains(uncounted) && !name.contains(fixedSlot))
            ++size->functions;
    } else if (!declaration.contains(QRegularExpression(QStringLiteral(R"(\bstatic\b)")))) {
        size->members += 1 + declaration.count(QLatin1Char(','));
    }
}

void scan(const QString &code, QVector<ClassSize> *classes);

/// Counts what stands between the braces of a class, and scans the classes in it.
void scanBody(const QString &body, ClassSize *size, QVector<ClassSize> *classes)
{
    static const QRegularExpression type(QStringLiteral(R"(\b(?:class|struct|union|enum)\b[^()=]*$)"));
    QString declaration;
    for (int i = 0; i < body.size();) {
        const QChar c = body.at(i);
        if (c == QLatin1Char('(')) {
            const int end = afterBracket(body, i);
            declaration += QStringLiteral("()");
            i = end;
        } else if (c == QLatin1Char('{')) {
            const int end = afterBracket(body, i);
            const bool isType = withoutTemplateArguments(declaration).contains(type);
            if (isType)
                scan(declaration + body.mid(i, end - i), classes);
            i = end;
            while (i < body.size() && body.at(i).isSpace())
                ++i;
            // A function's body ends its declaration; the braces of a value are followed by a comma or a semicolon.
            const bool goesOn = i < body.size() && QStringLiteral(";,{").contains(body.at(i));
            if (!goesOn && !isType) {
                count(declaration, size);
                declaration.clear();
            }
        } else if (c == QLatin1Char(';')) {
            count(declaration, size);
            declaration.clear();
            ++i;
        } else {
            declaration += c;
            ++i;
        }
    }
}

void scan(const QString &code, QVector<ClassSize> *classes)
{
    static const QRegularExpression head(QStringLiteral(
        R"((?<!enum )(?<![<,] )(?<![<,])\b(class|struct)\s+(?:\w+\s+)*?(\w+)(?:<[^;{}()]*>)?\s*(?:final\s*)?(?::(?!:)[^;{}()]*)?\{)"));
    int from = 0;
    for (;;) {
        const QRegularExpressionMatch match = head.match(code, from);
        if (!match.hasMatch())
            return;
        const int open = match.capturedEnd() - 1;
        const int end = afterBracket(code, open);
        ClassSize size;
        size.name = match.captured(2);
        size.isStruct = match.captured(1) == QLatin1String("struct");
        scanBody(code.mid(open + 1, end - open - 2), &size, classes);
        classes->append(size);
        from = end;
    }
}

} // namespace

QVector<ClassSize> classesOf(const QString &text)
{
    QVector<ClassSize> classes;
    scan(codeOf(text), &classes);
    return classes;
}
