#include "common/x11/process_of_window.h"

#include <QSysInfo>

namespace tarnwick::bar::x11 {

ProcessOfWindow::ProcessOfWindow(xcb_window_t window)
    : property_(window, atoms().netWmPid, 4), machine_(window, XCB_ATOM_WM_CLIENT_MACHINE, 256) {
  if (!extensions().clientIds) return;
  const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  clientIds_.emplace(xcb_res_query_client_ids(connection(), 1, &spec));
}

qint32 ProcessOfWindow::pid() {
  const auto reply = clientIds_ ? clientIds_->take() : nullptr;
  if (reply) {
    for (auto ids = xcb_res_query_client_ids_ids_iterator(reply.get()); ids.rem;
         xcb_res_client_id_value_next(&ids)) {
      const bool isPid = (ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
      if (isPid && xcb_res_client_id_value_value_length(ids.data) >= 1)
        return static_cast<qint32>(*xcb_res_client_id_value_value(ids.data));
    }
  }
  const QString machine = machine_.text();
  if (!machine.isEmpty() && machine != QSysInfo::machineHostName()) return 0;
  const auto told = property_.numbers();
  const bool plausible = !told.empty() && told.front() <= 0x7fffffff;
  return plausible ? static_cast<qint32>(told.front()) : 0;
}

}  // namespace tarnwick::bar::x11
