// Holds a key combination against everybody else until its standard input ends:
//   fake_key_holder core|xi2|xi2-keyboard KEYCODE MODIFIERS
// "core" is a grab of the core protocol, the others of XInput 2: for all keyboards or for one. Or
// the whole keyboard, tried for until it can be had, as screen lockers do, or once:
//   fake_key_holder lock|try

#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::uint16_t allMasters = XCB_INPUT_DEVICE_ALL_MASTER;
constexpr std::uint16_t masterKeyboard = 3;

bool grabCore(xcb_connection_t* connection, xcb_window_t root, int keyCode, int modifiers) {
  xcb_generic_error_t* const error = xcb_request_check(
      connection, xcb_grab_key_checked(connection, 0, root, static_cast<std::uint16_t>(modifiers),
                                       static_cast<xcb_keycode_t>(keyCode), XCB_GRAB_MODE_ASYNC,
                                       XCB_GRAB_MODE_ASYNC));
  std::free(error);
  return error == nullptr;
}

bool grabXi2(xcb_connection_t* connection, xcb_window_t root, int keyCode, int modifiers,
             std::uint16_t device) {
  std::free(xcb_input_xi_query_version_reply(
      connection, xcb_input_xi_query_version(connection, 2, 2), nullptr));
  const std::uint32_t mask = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
  const auto modifier = static_cast<std::uint32_t>(modifiers);
  auto* const reply = xcb_input_xi_passive_grab_device_reply(
      connection,
      xcb_input_xi_passive_grab_device(
          connection, XCB_CURRENT_TIME, root, XCB_CURSOR_NONE, static_cast<std::uint32_t>(keyCode),
          device, 1, 1, XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC,
          XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, &mask, &modifier),
      nullptr);
  const bool held = reply != nullptr && reply->num_modifiers == 0;
  std::free(reply);
  return held;
}

bool lock(xcb_connection_t* connection, xcb_window_t root, bool patient) {
  for (;;) {
    auto* const reply =
        xcb_grab_keyboard_reply(connection,
                                xcb_grab_keyboard(connection, 0, root, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr);
    const bool held = reply != nullptr && reply->status == XCB_GRAB_STATUS_SUCCESS;
    std::free(reply);
    if (held || !patient) return held;
    usleep(20'000);
  }
}

}  // namespace

int main(int argc, char** argv) {
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  const bool patient = argc == 2 && std::strcmp(argv[1], "lock") == 0;
  const bool locks = patient || (argc == 2 && std::strcmp(argv[1], "try") == 0);
  if ((argc != 4 && !locks) || xcb_connection_has_error(connection) != 0) return 2;
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  const int keyCode = locks ? 0 : std::atoi(argv[2]);
  const int modifiers = locks ? 0 : std::atoi(argv[3]);
  const bool held = locks ? lock(connection, root, patient)
                    : std::strcmp(argv[1], "core") == 0
                        ? grabCore(connection, root, keyCode, modifiers)
                        : grabXi2(connection, root, keyCode, modifiers,
                                  std::strcmp(argv[1], "xi2") == 0 ? allMasters : masterKeyboard);
  std::puts(held ? "held" : "refused");
  std::fflush(stdout);
  char byte;
  while (read(0, &byte, 1) > 0) {
  }
  xcb_disconnect(connection);
  return 0;
}
