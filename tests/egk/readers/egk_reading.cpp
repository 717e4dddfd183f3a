#include "egk/readers/egk_reading.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace kartocheck::test {

namespace {

constexpr QStringView AnotherPerson = u"fremd";

}  // namespace

std::vector<QString> Texts(std::initializer_list<QStringView> texts) {
  std::vector<QString> list;
  for (const QStringView text : texts) list.push_back(text.toString());
  return list;
}

InsuredData SampleElements(bool withPd, bool withVd) {
  InsuredData texts;
  if (withPd) {
    texts[Element::InsuredNumber] = QStringLiteral("Q110000028");
    texts[Element::FirstName] = QStringLiteral("Öllegunde");
    texts[Element::LastName] = QStringLiteral("Musterfräulein-Prüfstein");
    texts[Element::BirthDate] = QStringLiteral("03.02.1971");
    texts[Element::Street] = QStringLiteral("Am Testfeld 12 ");
    texts[Element::CountryCode] = QStringLiteral("D");
    texts[Element::PostalCode] = QStringLiteral("99999");
    texts[Element::Town] = QStringLiteral("Übungsstadt");
  }
  if (withVd) {
    texts[Element::InsurerName] = QStringLiteral("Erfundene Kasse für Prüfzwecke");
    texts[Element::InsurerNumber] = QStringLiteral("109999999");
    texts[Element::Vknr] = QStringLiteral("98");
    texts[Element::ValidUntil] = QStringLiteral("31.12.2029");
  }
  return texts;
}

std::vector<QString> AllTexts(const InsuredData& insured, const EgkData& egk) {
  std::vector<QString> texts;
  for (int i = 0; i < ElementCount; ++i) texts.push_back(insured[static_cast<Element>(i)]);
  texts.insert(texts.end(),
               {egk.iccsn, egk.statusText, egk.stored.status.tlv, egk.stored.statusText,
                egk.stored.readingDate.tlv, egk.stored.storedDate, egk.stored.convertedDate,
                egk.stored.approval.tlv, egk.stored.approvalNumber, egk.stored.checksum.tlv,
                egk.stored.checksumText});
  for (const VsdDocument& document : egk.documents) {
    texts.insert(texts.end(), {document.xmlText, document.validationText});
    for (const VsdField& field : document.fields) {
      texts.insert(texts.end(), {field.name, field.value});
    }
  }
  return texts;
}

EgkReading::EgkReading(CtApi& api) : link(api) {
  info.DisplayText = u"of before";
}

ReadOutcome EgkReading::Dispatched() {
  return ReadCardData({.link = link.session,
                       .port = Port(1),
                       .info = info,
                       .insured = insured,
                       .egk = egk,
                       .validation = validation,
                       .dialogs = link.dialogs,
                       .display = link.display,
                       .eventLoop = link.eventLoop});
}

EgkTarget EgkReading::Target() {
  return {link.session, info, insured, egk, validation, link.dialogs, link.display, link.eventLoop};
}

void EgkReading::ExpectInformationBoxes(const std::vector<QString>& critical) const {
  for (const ShownBox& box : link.dialogs.boxes) {
    const bool isCritical = std::find(critical.begin(), critical.end(), box.text) != critical.end();
    EXPECT_EQ(box.title, BoxTitle) << box.text.toStdString();
    EXPECT_EQ(box.icon, isCritical ? Icon::Critical : Icon::Information) << box.text.toStdString();
    EXPECT_FALSE(box.isQuestion) << box.text.toStdString();
  }
}

void EgkReading::FillWithAnotherPerson() {
  const QString text = AnotherPerson.toString();
  for (int i = 0; i < ElementCount; ++i) insured[static_cast<Element>(i)] = text;
  egk.iccsn = text;
  egk.statusText = text;
  for (VsdDocument& document : egk.documents) {
    document.xmlText = text;
    document.validationText = text;
    document.fields.fill({text, text});
  }
  for (StatusObject* object :
       {&egk.stored.status, &egk.stored.readingDate, &egk.stored.approval, &egk.stored.checksum}) {
    object->tlv = text;
  }
  for (QString* stored : {&egk.stored.statusText, &egk.stored.storedDate, &egk.stored.convertedDate,
                          &egk.stored.approvalNumber, &egk.stored.checksumText}) {
    *stored = text;
  }
  info.DataRead = true;
  info.EgkData = true;
}

void EgkReading::ExpectNothingOfAnotherPerson() const {
  for (const QString& text : AllTexts(insured, egk)) EXPECT_FALSE(text.contains(AnotherPerson));
}

}  // namespace kartocheck::test
