#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdint>
#include <cstdio>

// The ordinary build's driver for a fuzz target: every file of its corpus
// (seeds and findings) goes through the target once. A finding aborts, as
// under the fuzzer; an empty or missing corpus fails.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER\n", argv[0]);
        return 2;
    }
    const QDir corpus(QFile::decodeName(argv[1]));
    const QStringList files = corpus.entryList(QDir::Files, QDir::Name);
    if (files.isEmpty()) {
        std::fprintf(stderr, "%s: no corpus files\n", qPrintable(corpus.path()));
        return 1;
    }
    int passed = 0;
    for (const QString &name : files) {
        QFile file(corpus.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s: cannot be read\n", qPrintable(file.fileName()));
            return 1;
        }
        const QByteArray bytes = file.readAll();
        std::printf("%s\n", qPrintable(name));
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.constData()), size_t(bytes.size()));
        ++passed;
    }
    std::printf("%d passed, 0 failed\n", passed);
    return 0;
}
