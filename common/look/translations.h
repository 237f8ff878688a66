#pragma once

namespace tarnwick {

// Has the application's texts shown in the user's language (the environment's LANGUAGE, LC_MESSAGES
// and their like) where there is a translation. To be called once, when the QApplication is there.
void useTranslations();

}  // namespace tarnwick
