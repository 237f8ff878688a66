// A session manager (XSMP). Prints the address that goes into SESSION_MANAGER and then, whenever a
// client has saved its state, "<program> <restart style hint>", with "-" for no hint. The line
// "end" on its input ends the session for every client.
#include <X11/SM/SMlib.h>
#include <poll.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

struct Client {
  std::string program;
  std::string hint = "-";
};
std::map<SmsConn, Client> clients;

Status registered(SmsConn connection, SmPointer, char*) {
  SmsRegisterClientReply(connection, SmsGenerateClientID(connection));
  SmsSaveYourself(connection, SmSaveLocal, False, SmInteractStyleNone, False);
  return True;
}

void propertiesSet(SmsConn connection, SmPointer, int count, SmProp** properties) {
  for (int i = 0; i < count; ++i) {
    const SmPropValue& value = properties[i]->vals[0];
    const std::string text(static_cast<const char*>(value.value),
                           static_cast<std::size_t>(value.length));
    Client& client = clients[connection];
    if (std::strcmp(properties[i]->name, SmProgram) == 0) client.program = text;
    if (std::strcmp(properties[i]->name, SmRestartStyleHint) == 0) {
      client.hint = std::to_string(text[0]);
    }
    SmFreeProperty(properties[i]);
  }
  std::free(properties);
}

void saved(SmsConn connection, SmPointer, Bool) {
  std::printf("%s %s\n", clients[connection].program.c_str(), clients[connection].hint.c_str());
  SmsSaveComplete(connection);
}

void closed(SmsConn connection, SmPointer, int, char** reasons) {
  SmFreeReasons(0, reasons);
  clients.erase(connection);
}

Status accepted(SmsConn connection, SmPointer, unsigned long* mask, SmsCallbacks* callbacks,
                char**) {
  clients[connection] = {};
  *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
          SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
          SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
          SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
  std::memset(callbacks, 0, sizeof *callbacks);
  callbacks->register_client.callback = registered;
  callbacks->interact_request.callback = [](SmsConn, SmPointer, int) {};
  callbacks->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
  callbacks->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
  callbacks->save_yourself_phase2_request.callback = [](SmsConn client, SmPointer) {
    SmsSaveYourselfPhase2(client);
  };
  callbacks->save_yourself_done.callback = saved;
  callbacks->close_connection.callback = closed;
  callbacks->set_properties.callback = propertiesSet;
  callbacks->delete_properties.callback = [](SmsConn, SmPointer, int, char**) {};
  callbacks->get_properties.callback = [](SmsConn, SmPointer) {};
  return True;
}

}  // namespace

int main() {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  char error[256] = "";
  int count = 0;
  IceListenObj* listeners = nullptr;
  if (!SmsInitialize(
          "Test", "1", accepted, nullptr, [](char*) { return True; }, sizeof error, error) ||
      !IceListenForConnections(&count, &listeners, sizeof error, error)) {
    std::fprintf(stderr, "%s\n", error);
    return 1;
  }
  IceSetIOErrorHandler([](IceConn) {});
  for (int i = 0; i < count; ++i) IceSetHostBasedAuthProc(listeners[i], [](char*) { return True; });
  std::printf("%s\n", IceComposeNetworkIdList(count, listeners));

  std::vector<IceConn> connections;
  for (;;) {
    std::vector<pollfd> sources{{0, POLLIN, 0}};
    for (int i = 0; i < count; ++i) {
      sources.push_back({IceGetListenConnectionNumber(listeners[i]), POLLIN, 0});
    }
    for (IceConn connection : connections) {
      sources.push_back({IceConnectionNumber(connection), POLLIN, 0});
    }
    if (poll(sources.data(), sources.size(), -1) < 0) return 1;
    if (sources[0].revents != 0) {
      if (std::getchar() == EOF) return 0;
      for (const auto& [connection, client] : clients) SmsDie(connection);
      while (std::getchar() != '\n') {
      }
    }
    const auto listening = static_cast<std::size_t>(count);
    const std::size_t known = connections.size();
    for (std::size_t i = 0; i < listening; ++i) {
      IceAcceptStatus status = IceAcceptSuccess;
      if (sources[1 + i].revents == 0) continue;
      if (IceConn made = IceAcceptConnection(listeners[i], &status)) connections.push_back(made);
    }
    for (std::size_t i = known; i-- > 0;) {
      if (sources[1 + listening + i].revents == 0) continue;
      if (IceProcessMessages(connections[i], nullptr, nullptr) == IceProcessMessagesSuccess) {
        continue;
      }
      IceCloseConnection(connections[i]);
      connections.erase(connections.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }
}
