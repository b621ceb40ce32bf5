// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include <QCborStreamReader>
#include <QFile>
#include <QJsonObject>
#include <QPluginLoader>
#include <QTest>

#include <algorithm>
#include <cstring>

#include <dlfcn.h>
#include <elf.h>

namespace {

const char iid[] = "com.zel.Vornak2.DataDisplayModule";
const char className[] = "DataDisplayModule";

/// The whole block that the plug-in loader reads, byte by byte.
QByteArray expectedMetadata()
{
    QByteArray block("QTMETADATA !");
    block.append('\0').append('\5').append('\17').append('\0');
    block.append('\xbf');
    block.append('\2').append('\x78').append(static_cast<char>(sizeof iid - 1)).append(iid);
    block.append('\3').append(static_cast<char>(0x60 + sizeof className - 1)).append(className);
    block.append('\xff');
    return block;
}

QByteArray pluginBytes()
{
    QFile file(QStringLiteral(PLUGIN_FILE));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

template<typename Record> Record recordAt(const QByteArray &bytes, quint64 offset)
{
    Record record{};
    if (offset + sizeof record <= static_cast<quint64>(bytes.size()))
        std::memcpy(&record, bytes.constData() + offset, sizeof record);
    return record;
}

struct DynamicSymbols {
    QByteArrayList defined; ///< sorted; those that other libraries can bind to, weak and unique ones too
    QByteArrayList undefined;
};

DynamicSymbols dynamicSymbolsOf(const QByteArray &bytes)
{
    DynamicSymbols symbols;
    const auto header = recordAt<Elf64_Ehdr>(bytes, 0);
    for (quint64 section = 0; section < header.e_shnum; ++section) {
        const auto table = recordAt<Elf64_Shdr>(bytes, header.e_shoff + section * header.e_shentsize);
        if (table.sh_type != SHT_DYNSYM)
            continue;
        const auto names = recordAt<Elf64_Shdr>(bytes, header.e_shoff + quint64{table.sh_link} * header.e_shentsize);
        for (quint64 offset = 0; offset < table.sh_size; offset += table.sh_entsize) {
            const auto symbol = recordAt<Elf64_Sym>(bytes, table.sh_offset + offset);
            if (ELF64_ST_BIND(symbol.st_info) == STB_LOCAL)
                continue;
            const QByteArray name(bytes.constData() + names.sh_offset + symbol.st_name);
            (symbol.st_shndx == SHN_UNDEF ? symbols.undefined : symbols.defined).append(name);
        }
    }
    std::sort(symbols.defined.begin(), symbols.defined.end());
    return symbols;
}

/// What the compiler's instrumentation adds to the table of a build that is never shipped.
bool isOfInstrumentation(const QByteArray &name)
{
#ifdef INSTRUMENTED_BUILD
    for (const char *prefix : {"__asan", "___asan", "__odr_asan", "__ubsan", "__tsan", "__sanitizer", "__lsan",
                               "__gcov", "__llvm", "__start___sancov", "__stop___sancov"}) {
        if (name.startsWith(prefix))
            return true;
    }
#else
    Q_UNUSED(name)
#endif
    return false;
}

} // namespace

class TestContractSymbols : public QObject {
    Q_OBJECT

private slots:
    void exportsTheTwoEntryPointsAlone();
    void importsNothingOfTheHost();
    void entryPointReturnsTheMetadata();
    void fileHoldsTheMetadataOnce();
    void metadataIsAMapOfTwo();
    void loaderReadsTheMetadata();
};

void TestContractSymbols::exportsTheTwoEntryPointsAlone()
{
    QByteArrayList names;
    const QByteArrayList defined = dynamicSymbolsOf(pluginBytes()).defined;
    for (const QByteArray &name : defined) {
        if (!isOfInstrumentation(name))
            names.append(name);
    }
    QCOMPARE(names, (QByteArrayList{"qt_plugin_instance", "qt_plugin_query_metadata"}));
}

void TestContractSymbols::importsNothingOfTheHost()
{
    const QByteArrayList undefined = dynamicSymbolsOf(pluginBytes()).undefined;
    QVERIFY(!undefined.isEmpty());
    for (const QByteArray &name : undefined) {
        for (const char *hostType : {"IOManager", "Requester", "BackendVersions", "ModuleInterface", "ModuleEntry"})
            QVERIFY2(!name.contains(hostType), name.constData());
    }
}

void TestContractSymbols::entryPointReturnsTheMetadata()
{
    void *const library = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    QVERIFY2(library, dlerror());
    const auto query = reinterpret_cast<const char *(*)()>(dlsym(library, "qt_plugin_query_metadata"));
    QVERIFY(query);
    const QByteArray expected = expectedMetadata();
    const QByteArray block(query(), expected.size());
    dlclose(library);
    QCOMPARE(block.toHex(' '), expected.toHex(' '));
}

void TestContractSymbols::fileHoldsTheMetadataOnce()
{
    const QByteArray bytes = pluginBytes();
    QCOMPARE(bytes.count("QTMETADATA !"), 1);
    const QByteArray expected = expectedMetadata();
    const QByteArray block = bytes.mid(bytes.indexOf("QTMETADATA !"), expected.size());
    QCOMPARE(block.toHex(' '), expected.toHex(' '));
}

void TestContractSymbols::metadataIsAMapOfTwo()
{
    const QByteArray bytes = pluginBytes();
    const int start = bytes.indexOf("QTMETADATA !");
    QVERIFY(start >= 0);
    QCborStreamReader reader(bytes.mid(start + 16, 4096));
    QVERIFY(reader.isMap());
    QVERIFY(!reader.isLengthKnown());
    QVERIFY(reader.enterContainer());
    QMap<quint64, QString> entries;
    int count = 0;
    for (; reader.hasNext(); ++count) {
        QVERIFY(reader.isUnsignedInteger());
        const quint64 key = reader.toUnsignedInteger();
        QVERIFY(reader.next());
        QVERIFY(reader.isString());
        entries.insert(key, reader.readString().data);
        QCOMPARE(reader.readString().status, QCborStreamReader::EndOfString);
    }
    QVERIFY(reader.leaveContainer());
    QCOMPARE(count, 2);
    QCOMPARE(entries.value(2), QLatin1String(iid));
    QCOMPARE(entries.value(3), QLatin1String(className));
}

void TestContractSymbols::loaderReadsTheMetadata()
{
    QPluginLoader loader(QStringLiteral(PLUGIN_FILE));
    const QJsonObject metadata = loader.metaData();
    QVERIFY(!loader.isLoaded());
    QCOMPARE(metadata.value(QLatin1String("IID")).toString(), QLatin1String(iid));
    QCOMPARE(metadata.value(QLatin1String("className")).toString(), QLatin1String(className));
    QVERIFY(metadata.value(QLatin1String("MetaData")).toObject().isEmpty());
}

QTEST_GUILESS_MAIN(TestContractSymbols)
#include "tst_contract_symbols.moc"
