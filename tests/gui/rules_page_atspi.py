#!/usr/bin/python3
"""The Rules page as assistive technology sees it.

Run inside its own session bus (dbus-run-session): starts Xvfb, trayer, the
accessibility bus and velmora on a sandboxed home with one account and one
rule, opens the Rules page through its main button and reads the page over
AT-SPI. Each input must be reachable by the name of its label (its own name
or the label it is labelled by), each list, option button and check box by
its role and caption.
"""
from atspi_session import Session, fail, nodes, velmora_app, wait_for

# (role, name) pairs a screen reader must find on the page.
EXPECTED = [
    ("list", "Rules"),
    ("text", "Rule Name"),
    ("combo box", "Account"),
    ("combo box", "Join"),
    ("combo box", "Field"),
    ("combo box", "Condition"),
    ("check box", "NOT"),
    ("text", "Criteria"),
    ("text", "Rule Description"),
    ("radio button", "Delete from Server"),
    ("radio button", "Mark as Spam   (Delete Later)"),
    ("radio button", "Ignore"),
    ("check box", "Show Rule Report Summary"),
    ("check box", "New Messages Only"),
    ("text", "Show for seconds"),
    ("push button", "Update Description"),
    ("push button", "Undo"),
    ("push button", "Add Rule"),
    ("push button", "Rename Rules File"),
]

RULES = ("[Rules]\r\nRuleCount=1\r\n[Rule1]\r\nName=Spam words\r\nDescCount=1\r\n"
         "Description1=Subject Contains FLORIDA\r\n")


def main():
    settings = ("[Settings]\nFirstUse=1\nAcntNum=1\nAcntName1=Home\n"
                "AcntServer1=pop.example\nAcntEnabled1=1\nOptions\\RunStartUp=0\n")
    with Session(settings, {"data/Kestrum/Velmora/Rules.ini": RULES}) as session:
        import pyatspi
        session.start_velmora()

        def rules_button():
            for role, name, node in nodes(velmora_app(pyatspi)):
                if role == "push button" and name == "Rules":
                    return node
            return None

        wait_for("the Rules button", rules_button).queryAction().doAction(0)

        def page_found():
            seen = {(role, name) for role, name, _ in nodes(velmora_app(pyatspi), pyatspi)}
            return seen if ("text", "Rule Name") in seen else None

        seen = wait_for("the Rules page", page_found)
        missing = [pair for pair in EXPECTED if pair not in seen]
        if missing:
            fail(f"not reachable over AT-SPI: {missing}; found {sorted(seen)}")
        print(f"PASS: {len(EXPECTED)} controls of the Rules page reachable by name", flush=True)


if __name__ == "__main__":
    main()
