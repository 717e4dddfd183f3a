// Decompressing, validating and mapping one PD, beside what the libraries below need for the same
// data at the least, and beside the command-line tools. The counter "ratio" is our time by theirs,
// measured in turn so that the machine's moods fall on both.

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <libxml/parser.h>
#include <libxml/xmlschemas.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>

#include "egk/vsd_decoder.h"
#include "support/quiet_display.h"

namespace kartocheck {
namespace {

QByteArray ReadFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) std::abort();
  return file.readAll();
}

const QString DocumentPath = QStringLiteral(VSD_DOCUMENTS "/genuine/pd_prefix_two_addresses.xml");
const QString SchemaPath = QStringLiteral(VSD_SCHEMAS "/UC_PersoenlicheVersichertendatenXML.xsd");

// What gzip makes of the document, as a card holds it.
QByteArray CompressedDocument() {
  const QTemporaryDir directory;
  const QString path = directory.filePath(QStringLiteral("pd.gz"));
  const gzFile file = gzopen(QFile::encodeName(path).constData(), "wb9");
  const QByteArray document = ReadFile(DocumentPath);
  gzwrite(file, document.constData(), static_cast<unsigned>(document.size()));
  gzclose(file);
  return ReadFile(path);
}

// Our way.
class OurDecoder {
 public:
  OurDecoder() {
    validation_.isOn = true;
    validation_.schemas[VsdKind::Pd].SetText(ReadSchemaText(SchemaPath));
    (void)validation_.schemas[VsdKind::Pd].Prepared();
  }

  bool Run(const QByteArray& compressed) {
    InsuredData insured;
    const VsdTarget target{.egk = egk_,
                           .insured = insured,
                           .validation = validation_,
                           .display = display_,
                           .eventLoop = eventLoop_};
    return DecompressPd(compressed, target) == VsdResult::Decompressed &&
           !egk_.documents[VsdKind::Pd].notValidated && !insured[Element::LastName].isEmpty();
  }

 private:
  ValidationSettings validation_;
  EgkData egk_;
  test::QuietDisplay display_;
  test::QuietEventLoop eventLoop_;
};

// The least that zlib and libxml2 have to do: inflate from a file in memory, parse once, validate
// once against a compiled schema.
class BareLibraries {
 public:
  BareLibraries() {
    const QByteArray path = QFile::encodeName(SchemaPath);
    xmlSchemaParserCtxt* const parser = xmlSchemaNewParserCtxt(path.constData());
    schema_ = xmlSchemaParse(parser);
    xmlSchemaFreeParserCtxt(parser);
  }
  ~BareLibraries() { xmlSchemaFree(schema_); }
  BareLibraries(const BareLibraries&) = delete;
  BareLibraries& operator=(const BareLibraries&) = delete;

  bool Run(const QByteArray& compressed) const {
    const int descriptor = memfd_create("bare", MFD_CLOEXEC);
    const auto size = static_cast<std::size_t>(compressed.size());
    if (write(descriptor, compressed.constData(), size) != compressed.size()) return false;
    lseek(descriptor, 0, SEEK_SET);
    const gzFile file = gzdopen(descriptor, "rb");
    char text[32768];
    int total = 0;
    for (int count = 2048; count == 2048; total += count) {
      count = gzread(file, text + total, 2048);
      if (count < 0) return false;
    }
    gzclose(file);

    xmlDoc* const document = xmlReadMemory(text, total, nullptr, nullptr, XML_PARSE_NONET);
    xmlSchemaValidCtxt* const validator = xmlSchemaNewValidCtxt(schema_);
    const bool isValid = xmlSchemaValidateDoc(validator, document) == 0;
    xmlSchemaFreeValidCtxt(validator);
    xmlFreeDoc(document);
    return isValid;
  }

 private:
  xmlSchema* schema_;
};

using Clock = std::chrono::steady_clock;

template <typename Work>
double SecondsOf(benchmark::State& state, Work work) {
  const auto start = Clock::now();
  if (!work()) state.SkipWithError("not decoded");
  return std::chrono::duration<double>(Clock::now() - start).count();
}

template <typename Theirs>
void Compare(benchmark::State& state, const QByteArray& compressed, Theirs theirs) {
  OurDecoder decoder;
  double ours = 0;
  double other = 0;
  for ([[maybe_unused]] auto _ : state) {
    const double seconds = SecondsOf(state, [&] { return decoder.Run(compressed); });
    state.SetIterationTime(seconds);
    ours += seconds;
    other += SecondsOf(state, theirs);
  }
  state.counters["ratio"] = ours / other;
}

void OursByBareLibraries(benchmark::State& state) {
  const BareLibraries bare;
  const QByteArray compressed = CompressedDocument();
  Compare(state, compressed, [&] { return bare.Run(compressed); });
}
BENCHMARK(OursByBareLibraries)->UseManualTime()->Iterations(20'000)->Unit(benchmark::kMicrosecond);

void OursByCommandLine(benchmark::State& state) {
  const QTemporaryDir directory;
  const QByteArray compressed = CompressedDocument();
  QFile file(directory.filePath(QStringLiteral("pd.gz")));
  if (!file.open(QIODevice::WriteOnly) || file.write(compressed) != compressed.size()) std::abort();
  file.close();
  const std::string command = "gzip -dc '" + file.fileName().toStdString() +
                              "' | xmllint --noout --schema '" + SchemaPath.toStdString() +
                              "' - 2>/dev/null";
  Compare(state, compressed, [&] { return std::system(command.c_str()) == 0; });
}
BENCHMARK(OursByCommandLine)->UseManualTime()->Iterations(200)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace kartocheck

BENCHMARK_MAIN();
