#include "app/window/CommandMenus.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace kt500::window {

CommandMenus::CommandMenus(QMenuBar& bar, FormView& view, const FrameTexts& texts,
                           WindowCommands commands)
    : m_bar(bar), m_view(view), m_texts(texts) {
    QMenu* file = addMenu(FrameText::FileMenu);
    addToolbarCommand(*file, "open", QKeySequence::Open);
    addToolbarCommand(*file, "save", QKeySequence::Save);
    file->addSeparator();
    addWindowCommand(*file, FrameText::NewSession, QKeySequence::New, commands.newSession);
    file->addSeparator();
    addWindowCommand(*file, FrameText::Quit, QKeySequence(Qt::CTRL | Qt::Key_Q), commands.quit);

    QMenu* device = addMenu(FrameText::DeviceMenu);
    addToolbarCommand(*device, "uploadCurrent", QKeySequence(Qt::Key_F5));
    addToolbarCommand(*device, "uploadAll", QKeySequence(Qt::CTRL | Qt::Key_F5));
    for (const char* group : {"uploadIdentification", "uploadConfiguration", "uploadDiagnostics",
                              "uploadOperation", "uploadAdvanced"}) {
        addToolbarCommand(*device, group, {});
    }
    device->addSeparator();
    addToolbarCommand(*device, "send", {});
    addToolbarCommand(*device, "offlineConf", {});
    addToolbarCommand(*device, "compare", {});
    device->addSeparator();
    addToolbarCommand(*device, "undoCurrentPage", QKeySequence(Qt::CTRL | Qt::Key_Z));
    addToolbarCommand(*device, "undoAll", {});
    device->addSeparator();
    addToolbarCommand(*device, "stop", QKeySequence(Qt::Key_Escape));

    QMenu* view_ = addMenu(FrameText::ViewMenu);
    addToolbarCommand(*view_, "hideTree", {});
    addPageCommand(*view_, kPreviousPage, FrameText::PreviousPage,
                   QKeySequence(Qt::ALT | Qt::Key_Left), 0);
    addPageCommand(*view_, kNextPage, FrameText::NextPage, QKeySequence(Qt::ALT | Qt::Key_Right),
                   1);
    view_->addSeparator();
    addToolbarCommand(*view_, "settings", {});

    QMenu* help = addMenu(FrameText::HelpMenu);
    addToolbarCommand(*help, "help", QKeySequence(Qt::Key_F1));
    addWindowCommand(*help, FrameText::About, {}, commands.about);

    m_observer = view.form().addObserver([this](const form::PropertyChange& change) {
        if (change.property == form::PropertyId::Buttons) {
            sync();
        }
    });
    sync();
}

CommandMenus::~CommandMenus() {
    m_view.form().removeObserver(m_observer);
    for (const QPointer<QMenu>& menu : m_menus) {
        delete menu.data();  // takes its actions with it
    }
}

QAction* CommandMenus::action(const std::string& key) const {
    const auto found = m_actions.find(key);
    return found == m_actions.end() ? nullptr : found->second;
}

QMenu* CommandMenus::addMenu(FrameText title) {
    QMenu* menu = m_bar.addMenu(m_texts.text(title));
    m_menus.emplace_back(menu);
    return menu;
}

void CommandMenus::addToolbarCommand(QMenu& menu, const std::string& key,
                                     const QKeySequence& shortcut) {
    QAction* action = menu.addAction(QString::fromStdString(key));
    action->setObjectName(QString::fromStdString(key));
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, [this, key] {
        // The toolbar's own action: the same click, the same checks.
        if (QAction* item = m_view.toolbarAction(key); item != nullptr && item->isEnabled()) {
            item->trigger();
        }
        sync();
    });
    m_actions[key] = action;
}

void CommandMenus::addPageCommand(QMenu& menu, const char* key, FrameText text,
                                  const QKeySequence& shortcut, int navigationIndex) {
    QAction* action = menu.addAction(m_texts.text(text));
    action->setObjectName(QString::fromUtf8(key));
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, [this, navigationIndex] {
        form::Form& form = m_view.form();
        if (form::Control* button = form.find("cmdNavigation", navigationIndex)) {
            m_view.gate().run([&form, button] { form.raiseClick(*button); });
        }
    });
    m_actions[key] = action;
}

void CommandMenus::addWindowCommand(QMenu& menu, FrameText text, const QKeySequence& shortcut,
                                    const std::function<void()>& command) {
    QAction* action = menu.addAction(m_texts.text(text));
    action->setShortcut(shortcut);
    action->setEnabled(static_cast<bool>(command));
    if (command) {
        connect(action, &QAction::triggered, this, [command] { command(); });
    }
}

void CommandMenus::sync() {
    const form::Control* toolbar = m_view.form().find("smuiDTM", 1);
    if (toolbar == nullptr) {
        return;
    }
    const form::ToolbarModel& model = toolbar->toolbar();
    for (const QPointer<QMenu>& menu : m_menus) {
        if (menu.isNull()) {
            continue;
        }
        // Letters are given out again on each pass, so that a new language
        // gets mnemonics of its own words.
        QString taken;
        for (QAction* action : menu->actions()) {
            const std::string key = action->objectName().toStdString();
            const form::ToolbarItem* item = key.empty() ? nullptr : model.find(key);
            if (item == nullptr) {
                // The window's and the page commands keep their own texts.
                const QString text = action->text().remove(QLatin1Char('&'));
                if (!action->isSeparator()) {
                    action->setText(WithMnemonic(text, taken));
                }
                continue;
            }
            const bool bandVisible = model.bands().at(item->band).visible;
            action->setVisible(item->visible && bandVisible);
            action->setEnabled(item->enabled);
            action->setCheckable(item->style == form::ToolbarItemStyle::Check);
            action->setChecked(item->pressed);
            const std::string& text = item->text.empty() ? item->captionKey : item->text;
            action->setText(WithMnemonic(QString::fromStdString(text), taken));
        }
    }
}

}  // namespace kt500::window
