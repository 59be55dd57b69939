#include "kits/login/default/Pkce.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QString>

#include <gtest/gtest.h>

TEST(Pkce, ChallengeIsTheOneOfTheStandardsExample)
{
    // RFC 7636, appendix B.
    EXPECT_EQ(challengeOf("dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"),
              QByteArray("E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM"));
}

TEST(Pkce, SecretsAreFreshAndOfTheRightLetters)
{
    const QRegularExpression form(QStringLiteral("^[A-Za-z0-9_-]{43}$"));
    QSet<QByteArray> secrets;
    for (int i = 0; i < 100; ++i) {
        secrets.insert(freshSecret());
    }
    EXPECT_EQ(secrets.size(), 100);
    for (const QByteArray& secret : std::as_const(secrets)) {
        EXPECT_TRUE(form.match(QString::fromLatin1(secret)).hasMatch());
    }
}
