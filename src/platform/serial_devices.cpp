#include "platform/serial_devices.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <tuple>

namespace kartocheck {

QString DeviceFileOf(const QString& path) {
  const QString file = QFileInfo(path).canonicalFilePath();
  return file.isEmpty() ? path : file;
}

ComTable MakeComTable(const std::vector<SerialDevice>& devices, const ComTable& overrides) {
  ComTable table = overrides;
  QStringList taken;
  for (const QString& path : overrides) taken.append(DeviceFileOf(path));
  std::vector<SerialDevice> others;
  for (const SerialDevice& device : devices) {
    if (taken.contains(DeviceFileOf(device.path))) continue;
    if (device.builtInNumber && !table.contains(*device.builtInNumber)) {
      table.insert(*device.builtInNumber, device.path);
    } else if (!device.builtInNumber) {
      others.push_back(device);
    }
  }
  std::sort(others.begin(), others.end(), [](const SerialDevice& left, const SerialDevice& right) {
    return std::tie(left.identification, left.path) < std::tie(right.identification, right.path);
  });
  int number = 1;
  for (const SerialDevice& device : others) {
    while (table.contains(number)) ++number;
    table.insert(number, device.path);
  }
  return table;
}

QByteArray ComTableText(const ComTable& table) {
  QStringList entries;
  for (auto entry = table.begin(); entry != table.end(); ++entry) {
    entries.append(QString::number(entry.key()) + u'=' + entry.value());
  }
  return entries.join(u';').toUtf8();
}

}  // namespace kartocheck
