class Refusal(Exception):
    """The router refuses with this UPnP error code."""

    def __init__(self, code):
        super().__init__(code)
        self.code = code
