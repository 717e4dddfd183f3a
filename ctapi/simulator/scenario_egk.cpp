#include "simulator/scenario_egk.h"

#include "simulator/gzip.h"

namespace ctapi {

namespace {

Bytes FileOf(const ScenarioValue& value) {
  return value.File();
}

std::string TextOf(const ScenarioValue& value) {
  return value.Text();
}

// A document in a person's folder, compressed; nothing where the folder does not have it.
std::optional<Bytes> DocumentOf(const std::filesystem::path& folder, const char* name) {
  const auto document = ReadFile(folder / name);
  if (!document) return std::nullopt;
  return Gzip(*document);
}

// A block of the card: a document to be compressed, or the compressed bytes as they are.
void TakeBlock(ScenarioObject& object, const std::string& name, std::optional<Bytes>& block) {
  const auto document = object.Find(name);
  const auto asItIs = object.Find(name + "Block");
  if (document && asItIs) {
    object.Refuse("only one of the keys '" + name + "' and '" + name + "Block' is allowed");
  }
  if (document) block = Gzip(document->File());
  if (asItIs) block = asItIs->File();
}

Bytes PartOfStatus(const ScenarioValue& value) {
  constexpr std::size_t Length = 5;
  Bytes bytes = value.Hex();
  if (bytes.size() != Length) value.Refuse("expected 5 bytes of hexadecimal digits");
  return bytes;
}

VsdStatus ReadStatus(const ScenarioValue& value) {
  ScenarioObject object = value.Object();
  VsdStatus status;
  object.Take("transaction", status.Transaction, [](const ScenarioValue& text) {
    const std::string character = text.Text();
    if (character != "0" && character != "1") text.Refuse("expected '0' or '1'");
    return character.front();
  });
  object.Take("timestamp", status.Timestamp, [](const ScenarioValue& text) {
    constexpr std::size_t Length = 14;
    std::string digits = text.Text();
    if (digits.size() != Length || digits.find_first_not_of("0123456789") != std::string::npos) {
      text.Refuse("expected 14 digits JJJJMMTThhmmss");
    }
    return digits;
  });
  object.Take("version", status.Version, PartOfStatus);
  object.Take("reserved", status.Reserved, PartOfStatus);
  object.Finish();
  return status;
}

VsdContents ReadVsd(ScenarioObject& object, GvdPlace usualPlace) {
  VsdContents vsd;
  vsd.Place = usualPlace;
  if (const auto person = object.Find("person")) {
    const std::filesystem::path folder = person->Path();
    vsd.Pd = DocumentOf(folder, "pd.xml");
    vsd.Vd = DocumentOf(folder, "vd.xml");
    vsd.Gvd = DocumentOf(folder, "gvd.xml");
    if (!vsd.Pd && !vsd.Vd && !vsd.Gvd) {
      person->Refuse("the folder '" + folder.string() + "' has no pd.xml, vd.xml or gvd.xml");
    }
  }
  TakeBlock(object, "pd", vsd.Pd);
  TakeBlock(object, "vd", vsd.Vd);
  TakeBlock(object, "gvd", vsd.Gvd);
  object.Take("efPd", vsd.EfPd, FileOf);
  object.Take("efVd", vsd.EfVd, FileOf);
  object.Take("efGvd", vsd.EfGvd, FileOf);
  object.Take("efStatusVd", vsd.EfStatusVd, FileOf);
  object.Take("status", vsd.Status, ReadStatus);
  object.Take("gvdPlace", vsd.Place, [](const ScenarioValue& value) {
    return value.OneOf<GvdPlace>("place", {{"container", GvdPlace::Container},
                                           {"file", GvdPlace::File},
                                           {"both", GvdPlace::Both},
                                           {"nowhere", GvdPlace::Nowhere}});
  });
  object.Take("noGvdOffsets", vsd.Missing, [](const ScenarioValue& value) {
    return value.OneOf<NoGvdOffsets>("offsets",
                                     {{"0000", NoGvdOffsets::Zero}, {"FFFF", NoGvdOffsets::Ffff}});
  });
  object.Take("padding", vsd.Fill, [](const ScenarioValue& value) {
    return value.OneOf<Padding>("padding", {{"full", Padding::Full}, {"none", Padding::None}});
  });
  return vsd;
}

ApplicationState ReadApplication(const ScenarioValue& value) {
  return value.OneOf<ApplicationState>("state of the application",
                                       {{"active", ApplicationState::Active},
                                        {"deactivated", ApplicationState::Deactivated},
                                        {"missing", ApplicationState::Missing}});
}

RecordStatus ReadRecordStatus(ScenarioObject& object) {
  RecordStatus status;
  object.Take("statusLayout", status.Layout, [](const ScenarioValue& value) {
    return value.OneOf<StatusLayout>(
        "layout", {{"dataObjects", StatusLayout::DataObjects}, {"raw", StatusLayout::RawStatus}});
  });
  object.Take("readingDate", status.ReadingDate, TextOf);
  object.Take("approvalNumber", status.ApprovalNumber, TextOf);
  object.Take("approvalLength", status.ApprovalLength, [](const ScenarioValue& value) {
    constexpr std::int64_t Longest = 255;
    return static_cast<std::size_t>(value.Number(0, Longest));
  });
  object.Take("checksum", status.Check, ReadCheck);
  return status;
}

// What a file cannot hold is an error of the object that describes it.
template <typename Card, typename Contents>
Card Build(const ScenarioObject& object, const Contents& contents) {
  try {
    return Card(contents);
  } catch (const std::invalid_argument& error) {
    object.Refuse(error.what());
  }
}

}  // namespace

EgkCard ReadEgkCard(const ScenarioValue& value) {
  ScenarioObject object = value.Object();
  EgkContents contents;
  contents.Vsd = ReadVsd(object, GvdPlace::Container);
  object.Take("iccsn", contents.Iccsn, TextOf);
  object.Take("generation", contents.Generation, [](const ScenarioValue& text) {
    return text.OneOf<EgkGeneration>(
        "generation",
        {{"G1", EgkGeneration::G1}, {"G1+", EgkGeneration::G1Plus}, {"G2.1", EgkGeneration::G21}});
  });
  object.Take("application", contents.Hca, ReadApplication);
  object.Finish();
  return Build<EgkCard>(object, contents);
}

StoredEgkRecord ReadEgkRecord(const ScenarioValue& value, bool extended) {
  ScenarioObject object = value.Object();
  StoredEgkContents contents;
  contents.Extended = extended;
  const auto flag = [](const ScenarioValue& truth) { return truth.Flag(); };
  object.Take("extended", contents.Extended, flag);
  contents.Vsd = ReadVsd(object, contents.Extended ? GvdPlace::File : GvdPlace::Container);
  contents.Status = ReadRecordStatus(object);
  object.Take("inPieces", contents.InPieces, flag);
  object.Take("application", contents.Hca, ReadApplication);
  object.Finish();
  return Build<StoredEgkRecord>(object, contents);
}

CheckByte ReadCheck(const ScenarioValue& value) {
  const std::string text = value.Text();
  if (text == "computed") return {};
  if (text == "absent") return {.How = CheckByte::Kind::Absent};
  if (text == "empty") return {.How = CheckByte::Kind::Empty};
  const auto bytes = BytesFromHex(text);
  if (!bytes || bytes->size() != 1) {
    value.Refuse("expected 'computed', 'absent', 'empty' or two hexadecimal digits");
  }
  return {.How = CheckByte::Kind::Given, .Value = bytes->front()};
}

}  // namespace ctapi
