#include "kits/login/ui/LoginButtonTitle.h"

#include <QtCore/QMap>

namespace kovalin::kits {

namespace {

// The kit's only text, so that it has no translation files of its own.
const QMap<QString, QString>& titles()
{
    // Never destroyed: threads may still ask while the process ends.
    static const auto& texts = *new QMap<QString, QString>{
        {QStringLiteral("ar"), QStringLiteral("تسجيل الدخول")},
        {QStringLiteral("de"), QStringLiteral("Anmelden")},
        {QStringLiteral("en"), QStringLiteral("Log in")},
        {QStringLiteral("es"), QStringLiteral("Iniciar sesión")},
        {QStringLiteral("fr"), QStringLiteral("Se connecter")},
        {QStringLiteral("he"), QStringLiteral("התחברות")},
        {QStringLiteral("it"), QStringLiteral("Accedi")},
        {QStringLiteral("ja"), QStringLiteral("ログイン")},
        {QStringLiteral("ko"), QStringLiteral("로그인")},
        {QStringLiteral("pt"), QStringLiteral("Entrar")},
        {QStringLiteral("zh-Hans"), QStringLiteral("登录")},
        {QStringLiteral("zh-Hant"), QStringLiteral("登入")},
    };
    return texts;
}

} // namespace

QString loginButtonTitle(const QString& language)
{
    const auto& texts = titles();
    return texts.value(language, texts.value(QStringLiteral("en")));
}

QStringList loginButtonLanguages()
{
    return titles().keys();
}

} // namespace kovalin::kits
