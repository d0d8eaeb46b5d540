#include "surfaces/qt/confirmation_view_model.h"

#include "surfaces/qt/content_values.h"

namespace embrix {

ConfirmationViewModel::ConfirmationViewModel(Confirmation& confirmation, QObject* parent)
    : QObject(parent), confirmation_(confirmation) {
  read(*confirmation_.request());
  subscription_ = confirmation_.request().subscribe([this](const auto& request) {
    read(request);
    emit changed();
  });
}

void ConfirmationViewModel::read(const std::optional<Confirmation::Request>& request) {
  if (!request) return;
  question_ = toQString(request->question);
  message_ = toQString(request->message.value_or(""));
  actionTitle_ = toQString(request->actionTitle);
}

}  // namespace embrix
