// A session manager (XSMP). Prints the address that goes into SESSION_MANAGER and then, whenever a
// client has saved its state, "<program> <restart style hint>". A line on its input ends the
// session for every client.
#include <QCoreApplication>
#include <QSocketNotifier>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include <X11/SM/SMlib.h>

namespace {

using Properties = std::map<std::string, std::string>;
std::map<SmsConn, Properties> clients;

template <class... Arguments>
void ignore(Arguments...) {}

Status accepted(SmsConn made, SmPointer, unsigned long* mask, SmsCallbacks* callbacks, char**) {
  clients[made] = {};
  *mask = ~0UL;
  callbacks->register_client.callback = [](SmsConn client, SmPointer, char*) {
    SmsRegisterClientReply(client, SmsGenerateClientID(client));
    SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    return Status{True};
  };
  callbacks->set_properties.callback = [](SmsConn client, SmPointer, int count, SmProp** set) {
    for (int i = 0; i < count; ++i) {
      const SmPropValue& value = set[i]->vals[0];
      clients[client][set[i]->name].assign(static_cast<const char*>(value.value),
                                           static_cast<std::size_t>(value.length));
      SmFreeProperty(set[i]);
    }
    std::free(set);
  };
  callbacks->save_yourself_done.callback = [](SmsConn client, SmPointer, Bool) {
    Properties& known = clients[client];
    std::printf("%s %d\n", known[SmProgram].c_str(), known[SmRestartStyleHint][0]);
    SmsSaveComplete(client);
  };
  callbacks->save_yourself_phase2_request.callback = [](SmsConn client, SmPointer) {
    SmsSaveYourselfPhase2(client);
  };
  callbacks->close_connection.callback = [](SmsConn client, SmPointer, int, char**) {
    clients.erase(client);
  };
  callbacks->interact_request.callback = ignore;
  callbacks->interact_done.callback = ignore;
  callbacks->save_yourself_request.callback = ignore;
  callbacks->delete_properties.callback = ignore;
  callbacks->get_properties.callback = ignore;
  return True;
}

template <class Call>
void onInput(int source, Call call) {
  auto* const notifier = new QSocketNotifier(source, QSocketNotifier::Read, qApp);
  QObject::connect(notifier, &QSocketNotifier::activated, [=] { call(notifier); });
}

void listen(IceListenObj listener) {
  IceSetHostBasedAuthProc(listener, [](char*) { return Bool{True}; });
  onInput(IceGetListenConnectionNumber(listener), [listener](QSocketNotifier*) {
    IceAcceptStatus status = IceAcceptSuccess;
    const IceConn made = IceAcceptConnection(listener, &status);
    if (!made) return;
    onInput(IceConnectionNumber(made), [made](QSocketNotifier* notifier) {
      if (IceProcessMessages(made, nullptr, nullptr) != IceProcessMessagesSuccess) {
        notifier->setEnabled(false);
      }
    });
  });
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  char error[256] = "";
  int count = 0;
  IceListenObj* listeners = nullptr;
  if (!SmsInitialize(
          "Test", "1", accepted, nullptr, [](char*) { return Bool{True}; }, sizeof error, error) ||
      !IceListenForConnections(&count, &listeners, sizeof error, error)) {
    std::fprintf(stderr, "%s\n", error);
    return 1;
  }
  IceSetIOErrorHandler(ignore);
  for (int i = 0; i < count; ++i) listen(listeners[i]);
  std::printf("%s\n", IceComposeNetworkIdList(count, listeners));
  onInput(0, [](QSocketNotifier* input) {
    input->setEnabled(false);
    for (const auto& [client, properties] : clients) SmsDie(client);
  });
  return QCoreApplication::exec();
}
