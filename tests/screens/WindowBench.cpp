#include "screens/WindowBench.h"

#include "x/RecordingTransport.h"

namespace mirel::testing {

namespace {

void collect(QQuickItem* item, const QString& name, QList<QQuickItem*>& found)
{
    if (!item->isVisible())
        return;
    if (item->objectName() == name)
        found.append(item);
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* const child : children)
        collect(child, name, found);
}

void expectNotCut(QQuickItem* item, double windowWidth)
{
    if (!item->isVisible())
        return;
    const QString shown = item->property("text").toString();
    const bool isText = item->inherits("QQuickText") && !shown.isEmpty();
    const bool isControl = item->inherits("QQuickAbstractButton");
    if (isText || isControl) {
        const QRectF place = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        EXPECT_GE(place.left(), 0) << qPrintable(shown);
        EXPECT_LE(place.right(), windowWidth) << qPrintable(shown);
    }
    if (isControl) {
        EXPECT_GE(item->width(), item->implicitWidth()) << qPrintable(shown);
    }
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* const child : children)
        expectNotCut(child, windowWidth);
}

} // namespace

WindowBench::WindowBench() = default;

WindowBench::~WindowBench()
{
    screens.reset();
    if (model)
        blockOn(model->shutDown());
}

void WindowBench::fill(const QList<SyncedBookmark>& posts)
{
    const auto store = library.open();
    for (const SyncedBookmark& post : posts)
        store->upsertFromX(post, library.clock.now());
}

void WindowBench::fillWithNumberedPosts(int count)
{
    QList<SyncedBookmark> posts;
    for (int number = 1; number <= count; ++number)
        posts.append(makePost(number));
    // No test asks the network for a picture.
    for (SyncedBookmark& post : posts)
        post.author.profileImageURL.reset();
    fill(posts);
}

void WindowBench::makeModel(const std::optional<ScriptedX::Pages>& pages, bool isConnected)
{
    preferNoAutomaticSync();
    const auto servicesThread = std::make_shared<ServiceThread>(QStringLiteral("services"));
    MirelServices services;
    services.store = std::make_unique<Serial<LocalLibraryStore>>(
        std::make_shared<ServiceThread>(QStringLiteral("library")), [this] { return library.open(); });
    const ScriptedX::Pages script = pages.value_or(ScriptedX::Pages(0));
    services.x = std::make_unique<Serial<XDirectAPI>>(
        servicesThread, [&] { return std::unique_ptr<XDirectAPI>(std::make_unique<ScriptedX>(script)); });
    services.vault = std::make_unique<Serial<CredentialVault>>(servicesThread, [&] {
        std::optional<XCredentials> credentials;
        if (isConnected)
            credentials = XCredentials{.clientID = QStringLiteral("client"),
                                       .accessToken = QStringLiteral("access"),
                                       .userID = QStringLiteral("1")};
        return std::unique_ptr<CredentialVault>(std::make_unique<InMemoryCredentialVault>(credentials));
    });
    services.transport = std::make_unique<Serial<HTTPTransport>>(servicesThread, [] {
        return std::unique_ptr<HTTPTransport>(std::make_unique<RecordingTransport>());
    });
    services.oauth = std::make_unique<Serial<XOAuthService>>(servicesThread, [&] {
        return std::make_unique<XOAuthService>(services.vault->unguarded(), services.transport->unguarded(),
                                               QUrl(QStringLiteral("https://x.example/2")),
                                               QUrl(QStringLiteral("https://x.example/authorize")));
    });
    services.makeWebAuthenticationSession = [this] {
        return std::make_unique<BrowserAuthenticationSession>(
            [this](const QUrl& page, const std::function<void()>&) {
                openedPages.append(page);
                return true;
            });
    };
    if (pages) {
        services.syncService = std::make_unique<Serial<MirelSyncService>>(servicesThread, [&] {
            return std::make_unique<MirelSyncService>(services.x->unguarded(), *services.store);
        });
    }
    model = std::make_unique<MirelAppModel>(std::move(services));
}

void WindowBench::preferNoAutomaticSync() const
{
    const auto store = library.open();
    AppPreferences preferences = store->preferences();
    preferences.automaticSync = false;
    store->savePreferences(preferences);
}

void WindowBench::openWindow()
{
    if (!model)
        makeModel();
    blockOn(model->start());
    blockOn(model->refreshCredentialState());
    showWindow();
}

void WindowBench::showWindow()
{
    screens = std::make_unique<Screens>(*model, desktop, library.directory());
    screens->show();
    window().requestActivate();
    // The first frame places the rows.
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    EXPECT_FALSE(window().grabWindow().isNull());
}

QList<QQuickItem*> WindowBench::allVisible(const char* name, QQuickItem* below) const
{
    QList<QQuickItem*> found;
    collect(below ? below : window().contentItem(), QString::fromLatin1(name), found);
    return found;
}

QQuickItem* WindowBench::visible(const char* name, QQuickItem* below) const
{
    const QList<QQuickItem*> found = allVisible(name, below);
    return found.isEmpty() ? nullptr : found.constFirst();
}

QString WindowBench::text(const char* name, QQuickItem* below) const
{
    const QQuickItem* const item = visible(name, below);
    return item ? item->property("text").toString() : QStringLiteral("<nothing of that name is visible>");
}

QList<QQuickItem*> WindowBench::rows() const
{
    QList<QQuickItem*> found = allVisible("bookmarkRow", &list());
    found.removeIf([](const QQuickItem* row) { return !row->property("isOnScreen").toBool(); });
    std::sort(found.begin(), found.end(),
              [](const QQuickItem* one, const QQuickItem* other) { return one->y() < other->y(); });
    return found;
}

QQuickItem& WindowBench::list() const
{
    return *window().findChild<QQuickItem*>(QStringLiteral("bookmarkList"));
}

void WindowBench::expectNothingIsCut() const
{
    EXPECT_FALSE(window().grabWindow().isNull());
    expectNotCut(window().contentItem(), window().width());
}

void WindowBench::keepPicture(const QString& name) const
{
    const QDir pictures(QStringLiteral(MIREL_SCREENSHOTS));
    EXPECT_TRUE(pictures.mkpath(QStringLiteral(".")));
    EXPECT_TRUE(window().grabWindow().save(pictures.filePath(name + QStringLiteral(".png"))));
}

void WindowBench::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(&window(), key, modifiers);
}

void WindowBench::type(const char* text)
{
    for (const char letter : QByteArrayView(text))
        QTest::keyClick(&window(), letter);
}

QString WindowBench::currentRowText() const
{
    QQuickItem* const row = list().property("currentItem").value<QQuickItem*>();
    return row ? text("text", row) : QStringLiteral("<no row is current>");
}

void WindowBench::click(QQuickItem* item)
{
    ASSERT_NE(item, nullptr);
    // What has just become visible is placed by the next frame.
    EXPECT_FALSE(window().grabWindow().isNull());
    const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, centre.toPoint());
}

} // namespace mirel::testing
