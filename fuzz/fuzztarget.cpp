// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "fuzz/fuzztarget.h"

#include "fuzz/leaksearch.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace {

int argumentCount = 1;
char programName[] = "fuzz";
char *arguments[] = {programName, nullptr};

QTemporaryDir &home()
{
    static QTemporaryDir folder;
    return folder;
}

} // namespace

void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "DIFFERENCE: %s\n", what);
    std::abort();
}

QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<int>(size)};
}

void needApplication()
{
    // Never deleted: libFuzzer leaves through exit(), when Qt's own statics may be gone already.
    static QApplication *application = nullptr;
    if (application)
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    require(home().isValid(), "there is no room for a temporary folder");
    qputenv("HOME", QFile::encodeName(home().path()));
    // What Qt's platform without a screen makes when it starts stays until the process ends.
    WITHOUT_LEAK_SEARCH;
    application = new QApplication(argumentCount, arguments);
    // Setting the texts would take a tenth of the time, and is not what is on trial.
    QFont font = QApplication::font();
    font.setStyleStrategy(QFont::PreferNoShaping);
    QApplication::setFont(font);
}

QString homePath(const QString &name)
{
    return home().filePath(name);
}

QString writeHomeFile(const QString &name, const QByteArray &content)
{
    const QString path = homePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        QDir().mkpath(QFileInfo(path).path());
        require(file.open(QIODevice::WriteOnly), "an input file can't be opened");
    }
    require(file.write(content) == content.size(), "an input file can't be written");
    return path;
}

void removeHomeFile(const QString &name)
{
    QFile::remove(homePath(name));
}
