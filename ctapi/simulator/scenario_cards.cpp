#include "simulator/scenario_cards.h"

#include "simulator/kvk_record.h"
#include "simulator/scenario.h"
#include "simulator/scenario_egk.h"

namespace ctapi {

namespace {

KvkForm ReadForm(const ScenarioValue& value) {
  return value.OneOf<KvkForm>("form", {{"automatic", KvkForm::Automatic},
                                       {"60", KvkForm::Short60},
                                       {"6081", KvkForm::Long6081},
                                       {"6082", KvkForm::Long6082},
                                       {"fixed219", KvkForm::Fixed219},
                                       {"fixed231", KvkForm::Fixed231},
                                       {"fixed255", KvkForm::Fixed255}});
}

// The texts of one part of a record, by the elements' keys. Checksums are none of them.
KvkElements ReadTexts(ScenarioObject& object, ElementPart part) {
  KvkElements elements;
  for (const ElementDescription& element : ElementTable) {
    if (element.Part != part || element.IsChecksum()) continue;
    if (const auto value = object.Find(element.Key)) elements[element.Which] = value->Text();
  }
  return elements;
}

KvkElements ReadElementsOf(ScenarioObject object) {
  KvkElements elements = ReadTexts(object, ElementPart::Card);
  object.Finish();
  return elements;
}

// The elements themselves, or the name of the file that holds them.
KvkElements ReadElements(const ScenarioValue& value) {
  if (!value.IsText()) return ReadElementsOf(value.Object());
  try {
    const nlohmann::json json = ParseJsonFile(value.Path());
    return ReadElementsOf(ScenarioValue(json, "", value.Folder()).Object());
  } catch (const ScenarioError& error) {
    value.Refuse(value.Path().string() + ": " + error.what());
  }
}

KvkSupplement ReadSupplement(const ScenarioValue& value) {
  ScenarioObject object = value.Object();
  KvkSupplement supplement;
  supplement.Elements = ReadTexts(object, ElementPart::Supplement);
  object.Take("checksum", supplement.Check, ReadCheck);
  object.Finish();
  return supplement;
}

Bytes ReadKvkData(ScenarioObject& object) {
  const auto file = object.Find("file");
  const auto hex = object.Find("hex");
  const auto elements = object.Find("elements");
  if (int{file.has_value()} + int{hex.has_value()} + int{elements.has_value()} != 1) {
    object.Refuse("one of the keys 'elements', 'hex' and 'file' is needed");
  }
  if (file) return file->File();
  if (hex) return hex->Hex();

  KvkForm form = KvkForm::Automatic;
  CheckByte check;
  std::optional<KvkSupplement> supplement;
  object.Take("form", form, ReadForm);
  object.Take("checksum", check, ReadCheck);
  object.Take("supplement", supplement, ReadSupplement);
  try {
    return BuildKvk(ReadElements(*elements), form, check, supplement);
  } catch (const std::invalid_argument& error) {
    object.Refuse(error.what());
  }
}

KvkCard::Identifier ReadIdentifier(const ScenarioValue& value) {
  return value.OneOf<KvkCard::Identifier>("identifier", {{"current", KvkCard::Identifier::Current},
                                                         {"old", KvkCard::Identifier::Old},
                                                         {"none", KvkCard::Identifier::None}});
}

KvkCard ReadKvk(const ScenarioValue& value) {
  ScenarioObject object = value.Object();
  Bytes data = ReadKvkData(object);
  KvkCard::Identifier identifier = KvkCard::Identifier::Current;
  object.Take("identifier", identifier, ReadIdentifier);
  object.Finish();
  return KvkCard(std::move(data), identifier);
}

// Exactly one of the two kinds of card; `readEgk` reads the one with a processor.
template <typename ReadEgk>
CardImage ReadKvkOrEgk(const ScenarioValue& value, ReadEgk readEgk) {
  ScenarioObject object = value.Object();
  const auto kvk = object.Find("kvk");
  const auto egk = object.Find("egk");
  if (kvk.has_value() == egk.has_value()) {
    object.Refuse("one of the keys 'kvk' and 'egk' is needed");
  }
  object.Finish();
  if (kvk) return ReadKvk(*kvk);
  return readEgk(*egk);
}

}  // namespace

CardImage ReadCard(const ScenarioValue& value) {
  return ReadKvkOrEgk(value, ReadEgkCard);
}

CardImage ReadRecord(const ScenarioValue& value, bool extended) {
  return ReadKvkOrEgk(
      value, [extended](const ScenarioValue& egk) { return ReadEgkRecord(egk, extended); });
}

}  // namespace ctapi
