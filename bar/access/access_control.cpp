#include "bar/access/access_control.h"

#include <QFile>
#include <algorithm>
#include <utility>

#include "bar/access/access_dialog.h"

namespace tarnwick::bar {

namespace {

constexpr std::size_t maximumQuestions = 100;
constexpr std::size_t maximumAskers = 100;  // of one question

QString commandLine(qint32 pid) {
  QFile file(QStringLiteral("/proc/%1/cmdline").arg(pid));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QByteArray text = file.read(1'000);
  while (text.endsWith('\0')) text.chop(1);
  text.replace('\0', ' ');
  return QString::fromLocal8Bit(text);
}

}  // namespace

AccessControl::AccessControl(Callers& callers, AccessStore& store,
                             desktop::IdentityResolver& identities,
                             std::function<void(QWidget&)> bringToUser, QObject* parent)
    : QObject(parent),
      callers_(callers),
      store_(store),
      identities_(identities),
      bringToUser_(std::move(bringToUser)) {
  connect(&callers_, &Callers::gone, this, &AccessControl::forget);
  connect(&store_, &AccessStore::changed, this, &AccessControl::storeChanged);
}

AccessControl::~AccessControl() = default;

bool AccessControl::allows(qint32 pid, Capability capability) {
  const std::string executable = identities_.executable(pid);
  return !executable.empty() && store_.allows(executable, capability);
}

void AccessControl::request(const QString& name, qint32 pid, Capability capability,
                            std::function<void(bool)> then) {
  if (allows(pid, capability)) return then(true);
  Question question{identities_.executable(pid), capability};
  if (question.first.empty() || refused_.count(question) != 0) return then(false);
  auto open = std::find_if(open_.begin(), open_.end(),
                           [&](const Open& other) { return other.question == question; });
  if (open == open_.end()) {
    if (open_.size() >= maximumQuestions) return then(false);
    open = open_.insert(open, {std::move(question), {}, nullptr});
  }
  if (open->askers.size() >= maximumAskers) return then(false);
  open->askers.push_back({name, pid, std::move(then)});
  showFirst();
}

void AccessControl::showFirst() {
  if (open_.empty() || open_.front().dialog) return;
  Open& open = open_.front();
  const qint32 pid = open.askers.front().pid;
  const auto identity = identities_.identify(pid);
  AccessDialog::Subject subject;
  if (identity) {
    subject.name =
        QString::fromStdString(identity->name.empty() ? identity->bundleId : identity->name);
    subject.icon = QString::fromStdString(identity->icon);
  }
  subject.executable = QString::fromStdString(open.question.first);
  subject.commandLine = commandLine(pid);
  open.dialog = std::make_unique<AccessDialog>(subject, open.question.second);
  connect(open.dialog.get(), &AccessDialog::answered, this,
          [this, question = open.question](bool allow) { answer(question, allow); });
  open.dialog->show();
}

bool AccessControl::asks(const QString& name) const {
  if (open_.empty()) return false;
  const auto& askers = open_.front().askers;
  return std::any_of(askers.begin(), askers.end(),
                     [&](const Asker& asker) { return asker.name == name; });
}

void AccessControl::presentQuestion() {
  if (open_.empty() || !open_.front().dialog) return;
  bringToUser_(*open_.front().dialog);
}

void AccessControl::answer(const Question& question, bool allow) {
  // The store tells of the new grant, which settles the question; only if it cannot be stored the
  // answer is no.
  const bool granted = allow && store_.grant(question.first, question.second);
  if (!allow) refused_.insert(question);
  settle(question, granted);
}

void AccessControl::settle(Question question, bool granted) {
  const auto found = std::find_if(open_.begin(), open_.end(),
                                  [&](const Open& open) { return open.question == question; });
  if (found == open_.end()) return;
  const Open open = takeOpen(found);
  for (const Asker& asker : open.askers) asker.then(granted);
  showFirst();
}

AccessControl::Open AccessControl::takeOpen(std::vector<Open>::iterator place) {
  Open open = std::move(*place);
  open_.erase(place);
  if (open.dialog) {
    // This may run inside the dialog's own signal.
    open.dialog->disconnect(this);
    open.dialog->hide();
    open.dialog.release()->deleteLater();
  }
  return open;
}

void AccessControl::forget(const QString& name) {
  for (auto open = open_.begin(); open != open_.end();) {
    std::erase_if(open->askers, [&](const Asker& asker) { return asker.name == name; });
    if (!open->askers.empty()) {
      ++open;
      continue;
    }
    const auto index = open - open_.begin();
    takeOpen(open);
    open = open_.begin() + index;
  }
  showFirst();
}

void AccessControl::storeChanged(const std::string& executable, Capability capability,
                                 bool granted) {
  if (granted) settle({executable, capability}, true);
  for (const auto& [name, pid] : callers_.known()) {
    if (identities_.executable(pid) == executable) emit changed(name, capability, granted);
  }
}

}  // namespace tarnwick::bar
