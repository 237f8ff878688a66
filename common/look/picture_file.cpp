#include "common/look/picture_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPixmap>
#include <QXmlStreamReader>

namespace tarnwick {

namespace {

constexpr qint64 maximumBytes = 4 * 1024 * 1024;
constexpr int maximumSide = 2048;
constexpr int maximumAspect = 8;  // width to height

constexpr int maximumElements = 10'000;
constexpr int maximumUses = 24;  // each may double what is drawn
constexpr int maximumEmbedded = 16;

bool isCompressed(const QByteArray& bytes) {
  return bytes.startsWith("\x1f\x8b");
}

QStringView localName(QStringView qualified) {
  return qualified.mid(qualified.lastIndexOf(u':') + 1);
}

// A picture within a vector picture: no vector picture in its turn.
bool isPlainPicture(const QString& reference) {
  const qsizetype start = reference.lastIndexOf(QLatin1String("base64,"));
  if (start < 0) return false;
  QBuffer buffer;
  buffer.setData(QByteArray::fromBase64(reference.mid(start + 7).toLatin1()));
  buffer.open(QIODevice::ReadOnly);
  if (isCompressed(buffer.data())) return false;
  QImageReader reader(&buffer);
  if (reader.format().isEmpty() || reader.format().startsWith("svg")) return false;
  const QSize size = reader.size();
  return size.width() <= maximumSide && size.height() <= maximumSide;
}

// Whether a vector picture needs nothing but itself and draws in a bounded time: it may name
// further files, pipes among them.
bool isSelfContained(const QByteArray& svg) {
  if (svg.contains('\0')) return false;  // of another encoding
  QXmlStreamReader reader(svg);
  reader.setNamespaceProcessing(false);  // any prefix may stand for any namespace
  int elements = 0;
  int uses = 0;
  int embedded = 0;
  while (!reader.atEnd()) {
    const QXmlStreamReader::TokenType token = reader.readNext();
    if (token == QXmlStreamReader::ProcessingInstruction &&
        reader.processingInstructionTarget() == QLatin1String("xml-stylesheet")) {
      return false;
    }
    if (token != QXmlStreamReader::StartElement) continue;
    if (++elements > maximumElements) return false;
    if (localName(reader.qualifiedName()) == QLatin1String("use") && ++uses > maximumUses)
      return false;
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute& attribute : attributes) {
      if (localName(attribute.qualifiedName()) != QLatin1String("href")) continue;
      const QString reference = attribute.value().trimmed().toString();
      if (reference.isEmpty() || reference.startsWith(u'#')) continue;
      if (!reference.startsWith(QLatin1String("data:")) || ++embedded > maximumEmbedded ||
          !isPlainPicture(reference)) {
        return false;
      }
    }
  }
  return !reader.hasError();
}

}  // namespace

QImage readPicture(const QByteArray& bytes, int side) {
  if (bytes.isEmpty() || bytes.size() > maximumBytes || isCompressed(bytes)) return {};
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  const bool vector = reader.format().startsWith("svg");
  if (vector && !isSelfContained(bytes)) return {};
  const QSize size = reader.size();  // reads a vector picture
  if (!size.isEmpty()) {
    if (!vector && (size.width() > maximumSide || size.height() > maximumSide)) return {};
    if (vector) {
      const QSize box(side * maximumAspect, side);
      reader.setScaledSize(size.scaled(box, Qt::KeepAspectRatio));
    }
  } else if (vector) {
    reader.setScaledSize({side, side});
  }
  const QImage image = reader.read();
  if (image.isNull() || image.width() > maximumSide * maximumAspect) return {};
  return image.height() > side ? image.scaledToHeight(side, Qt::SmoothTransformation) : image;
}

QImage readPictureFile(const QString& path, int side) {
  const int descriptor =
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) return {};
  QFile file;
  if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
    ::close(descriptor);
    return {};
  }
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return readPicture(file.read(maximumBytes + 1), side);
}

QIcon namedIcon(const QString& nameOrPath) {
  constexpr int side = 128;
  if (nameOrPath.isEmpty()) return {};
  if (!nameOrPath.startsWith(u'/')) return QIcon::fromTheme(nameOrPath);
  const QImage image = readPictureFile(nameOrPath, side);
  return image.isNull() ? QIcon() : QIcon(QPixmap::fromImage(image));
}

}  // namespace tarnwick
